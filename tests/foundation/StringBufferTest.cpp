#include "common/TestUtils.h"

#include <functional>
#include <memory>

using namespace QvXmlLib16;

namespace {

std::unique_ptr<CStringBuffer> MakeBuffer(unsigned long blockSize) {
    return blockSize ? std::make_unique<CStringBuffer>(blockSize)
                     : std::make_unique<CStringBuffer>();
}

} // namespace

TEST(StringBuffer, BlocksChainAsTextArrives) {
    struct Case {
        const char* name;
        unsigned long blockSize; // 0: the default constructor
        std::vector<std::wstring> appends;
        size_t blocks;
        std::wstring text;
    };

    const std::wstring full(4095, L'x'), wide = L"\U0001F600\u00e9\u20ac";
    const Case cases[] = {
        {"small pieces fill blocks", 5, {L"ab", L"cd", L"ef"}, 2, L"abcdef"},
        {"one character per block", 2, {L"abc"}, 3, L"abc"},
        {"default block is full at 4095", 0, {full}, 1, full},
        {"default block overflows at 4096", 0, {full + L"x"}, 2, full + L"x"},
        {"nothing appended", 5, {}, 0, L""},
        {"empty string adds no block", 5, {L""}, 0, L""},
        {"stops at an embedded zero", 5, {std::wstring(L"ab\0cd", 5), L"e"}, 1, L"abe"},
        {"characters outside the BMP are one unit", 3, {wide}, 2, wide},
    };
    for (const Case& tc : cases) {
        SCOPED_TRACE(tc.name);
        auto buffer = MakeBuffer(tc.blockSize);
        for (const std::wstring& piece : tc.appends)
            buffer->Append(piece);
        EXPECT_EQ(buffer->GetBlockCount(), tc.blocks);
        EXPECT_EQ(buffer->GetLength(), tc.text.size());
        EXPECT_EQ(std::wstring(buffer->GetText()), tc.text);
        EXPECT_EQ(buffer->GetLength(), tc.text.size());
        EXPECT_EQ(buffer->GetBlockCount(), tc.text.empty() ? 0u : 1u);
    }
}

TEST(StringBuffer, AppendingForms) {
    CStringBuffer buffer(5);
    for (wchar_t c : std::wstring(L"abcdefghi"))
        buffer.Append(c);
    EXPECT_EQ(buffer.GetBlockCount(), 3u);
    EXPECT_EQ(buffer.GetLength(), 9u);
    buffer.Append(L"jk");
    buffer.Append(std::wstring(L"l"));
    buffer.Append(L'\U0001F600');
    EXPECT_EQ(buffer.GetBlockCount(), 4u);
    EXPECT_EQ(std::wstring(buffer.GetText()), L"abcdefghijkl\U0001F600");
}

// Counted and repeated appends of every length from every position in a block: what fits is
// copied in place, what does not continues in new blocks, and the text stays the same.
TEST(StringBuffer, CountedAndRepeatedAppendsAtEveryOffset) {
    const std::wstring source = L"0123456789abcdefghijklmnopqrstuvwxyz";
    for (unsigned long offset = 0; offset < 12; ++offset) {
        for (unsigned long count = 0; count <= 30; ++count) {
            SCOPED_TRACE("offset " + std::to_string(offset) + ", count " + std::to_string(count));
            CStringBuffer counted(13); // 12 characters a block
            CStringBuffer repeated(13);
            counted.Append(source.c_str(), offset);
            repeated.Append(source.c_str(), offset);
            counted.Append(source.c_str() + 1, count);
            repeated.AppendRepeated(L'\t', count);
            EXPECT_EQ(counted.GetLength(), offset + count);
            EXPECT_EQ(repeated.GetLength(), offset + count);
            EXPECT_EQ(counted.GetBlockCount(), (offset + count + 11) / 12);
            EXPECT_EQ(std::wstring(counted.GetText()),
                      source.substr(0, offset) + source.substr(1, count));
            EXPECT_EQ(std::wstring(repeated.GetText()),
                      source.substr(0, offset) + std::wstring(count, L'\t'));
        }
    }
    // Zero characters are copied like any other, and the text still ends after the last one.
    CStringBuffer zeros;
    zeros.Append(L"a\0b\0\0\0\0\0\0\0\0c", 12);
    EXPECT_EQ(zeros.GetLength(), 12u);
    EXPECT_EQ(std::wstring(zeros.GetText(), 12), std::wstring(L"a\0b\0\0\0\0\0\0\0\0c", 12));
}

TEST(StringBuffer, GetTextJoinsIntoOneBlock) {
    CStringBuffer buffer(5);
    buffer.Append(L"0123456789");
    ASSERT_EQ(buffer.GetBlockCount(), 3u);
    const wchar_t* joined = buffer.GetText();
    EXPECT_EQ(std::wstring(joined), L"0123456789");
    EXPECT_EQ(buffer.GetBlockCount(), 1u);
    // A single block is handed out as it is.
    EXPECT_EQ(buffer.GetText(), joined);

    // The joined block is full, so the next character starts a fresh block.
    buffer.Append(L'x');
    EXPECT_EQ(buffer.GetBlockCount(), 2u);
    EXPECT_EQ(buffer.GetLength(), 11u);
    EXPECT_EQ(std::wstring(buffer.GetText()), L"0123456789x");

    buffer.Append(L"yz");
    EXPECT_EQ(std::wstring(buffer.GetText()), L"0123456789xyz");

    CStringBuffer empty;
    ASSERT_NE(empty.GetText(), nullptr);
    EXPECT_EQ(std::wstring(empty.GetText()), L"");
}

TEST(StringBuffer, EmptyClearAndSetText) {
    struct Case {
        const char* name;
        std::function<void(CStringBuffer&)> prepare;
        std::function<void(CStringBuffer&)> act;
        size_t blocksAfter;
    };

    const Case cases[] = {
        {"Empty keeps a single block", [](CStringBuffer& b) { b.Append(L"abc"); },
         [](CStringBuffer& b) { b.Empty(); }, 1},
        {"Empty of several blocks clears", [](CStringBuffer& b) { b.Append(L"0123456789"); },
         [](CStringBuffer& b) { b.Empty(); }, 0},
        {"Empty of nothing", [](CStringBuffer&) {}, [](CStringBuffer& b) { b.Empty(); }, 0},
        {"Clear of one block", [](CStringBuffer& b) { b.Append(L"abc"); },
         [](CStringBuffer& b) { b.Clear(); }, 0},
    };
    for (const Case& tc : cases) {
        SCOPED_TRACE(tc.name);
        CStringBuffer buffer(5);
        tc.prepare(buffer);
        tc.act(buffer);
        EXPECT_EQ(buffer.GetLength(), 0u);
        EXPECT_EQ(buffer.GetBlockCount(), tc.blocksAfter);
        EXPECT_EQ(std::wstring(buffer.GetText()), L"");
        // The configured block size survives.
        buffer.Append(L"0123456789");
        EXPECT_EQ(buffer.GetBlockCount(), 3u);
        EXPECT_EQ(std::wstring(buffer.GetText()), L"0123456789");
    }

    // Empty keeps the joined block with its whole capacity.
    CStringBuffer joined(5);
    joined.Append(L"0123456789");
    joined.GetText();
    joined.Empty();
    joined.Append(L"abcdefghij");
    EXPECT_EQ(joined.GetBlockCount(), 1u);
    joined.Append(L'k');
    EXPECT_EQ(joined.GetBlockCount(), 2u);
    EXPECT_EQ(std::wstring(joined.GetText()), L"abcdefghijk");

    CStringBuffer set(5);
    set.Append(L"previous text");
    set.SetText(L"hello");
    EXPECT_EQ(set.GetLength(), 5u);
    EXPECT_EQ(set.GetBlockCount(), 2u);
    EXPECT_EQ(std::wstring(set.GetText()), L"hello");
    set.SetText(L"");
    EXPECT_EQ(set.GetLength(), 0u);
    EXPECT_EQ(std::wstring(set.GetText()), L"");
}
