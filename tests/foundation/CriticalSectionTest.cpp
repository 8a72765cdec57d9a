#include "common/TestUtils.h"

#include <functional>
#include <thread>

TEST(CriticalSection, SerialisesUpdatesFromThreads) {
    struct Case {
        const char* name;
        std::function<void(CQVCriticalSection&, long&)> increment;
    };

    const Case cases[] = {
        {"Enter and Leave",
         [](CQVCriticalSection& section, long& counter) {
             section.Enter();
             ++counter;
             section.Leave();
         }},
        {"scoped lock",
         [](CQVCriticalSection& section, long& counter) {
             CQVCriticalSection::CScopedLock lock(section);
             ++counter;
         }},
    };
    constexpr int kThreads = 4;
    constexpr int kRounds = 20000;
    for (const Case& tc : cases) {
        SCOPED_TRACE(tc.name);
        CQVCriticalSection section;
        long counter = 0;
        std::vector<std::thread> threads;
        for (int t = 0; t < kThreads; ++t)
            threads.emplace_back([&] {
                for (int i = 0; i < kRounds; ++i)
                    tc.increment(section, counter);
            });
        for (std::thread& thread : threads)
            thread.join();
        EXPECT_EQ(counter, kThreads * kRounds);
    }
}
