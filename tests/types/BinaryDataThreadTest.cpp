#include "common/TestUtils.h"

#include <atomic>
#include <thread>

using namespace QvXmlLib16;
using ByteVec = std::vector<unsigned char>;

namespace {

constexpr int kThreads = 4;

ByteVec Pattern(size_t n) {
    ByteVec bytes(n);
    for (size_t i = 0; i < n; ++i)
        bytes[i] = static_cast<unsigned char>(i * 31 + 5);
    return bytes;
}

// Starts every worker at once, so their reference-count updates really overlap.
template <class Work>
void RunTogether(Work work) {
    std::atomic<bool> go{false};
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t)
        threads.emplace_back([&, t] {
            while (!go.load())
                std::this_thread::yield();
            work(t);
        });
    go = true;
    for (std::thread& thread : threads)
        thread.join();
}

} // namespace

TEST(BinaryDataThreads, CopiesOfOneValueAreReadAndReleasedConcurrently) {
    const ByteVec expected = Pattern(1000);
    ByteVec source = expected;
    const CBinaryData original(source.data(), 1000, false);
    std::atomic<int> mismatches{0};

    RunTogether([&](int t) {
        for (int round = 0; round < 2000; ++round) {
            CBinaryData copy(original);
            CBinaryData second;
            second = copy;
            const CBinaryData& view = second;
            const size_t at = static_cast<size_t>((round * 37 + t) % 1000);
            if (view.GetLength() != 1000 || view[at] != expected[at])
                ++mismatches;
            if (round % 100 == 0 && !(view == original))
                ++mismatches;
        }
    });
    EXPECT_EQ(mismatches.load(), 0);
    EXPECT_EQ(qvtest::Bytes(original), expected);
}

TEST(BinaryDataThreads, EachThreadAppendsToItsOwnCopy) {
    const ByteVec expected = Pattern(300);
    ByteVec source = expected;
    const CBinaryData original(source.data(), 300, false);
    std::vector<CBinaryData> results(kThreads);

    RunTogether([&](int t) {
        for (int round = 0; round < 50; ++round) {
            CBinaryData mine(original);
            for (int i = 0; i < 20; ++i)
                mine.Append(static_cast<unsigned char>(t));
            mine[0] = static_cast<unsigned char>(0xF0 + t);
            if (round == 49)
                results[t] = mine;
        }
    });

    EXPECT_EQ(qvtest::Bytes(original), expected);
    for (int t = 0; t < kThreads; ++t) {
        SCOPED_TRACE(t);
        ByteVec want = expected;
        want[0] = static_cast<unsigned char>(0xF0 + t);
        want.insert(want.end(), 20, static_cast<unsigned char>(t));
        EXPECT_EQ(qvtest::Bytes(results[t]), want);
    }
}

TEST(BinaryDataThreads, LastReferenceMayDropOnAnyThread) {
    for (int round = 0; round < 200; ++round) {
        std::vector<std::vector<CBinaryData>> perThread(kThreads);
        {
            ByteVec source = Pattern(64);
            const CBinaryData shared(source.data(), 64, false);
            for (int t = 0; t < kThreads; ++t)
                perThread[t].assign(8, shared);
        }
        // No copy stays behind on this thread: whichever worker drops the last one frees it.
        RunTogether([&](int t) {
            while (!perThread[t].empty())
                perThread[t].pop_back();
        });
    }
}
