#include "production/base/BoundedQueue.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>

using namespace tabulor;

TEST(BoundedQueue, EveryItemArrivesInOrderWhateverTheBatchesAndTheEnd)
{
    // Fewer items than a batch, exactly a batch and many batches with a remainder: the
    // consumer waits for a batch, so the last short one must still come out when it closes.
    for (int count : {1, 4, 8, 1001}) {
        BoundedQueue<int> queue(8);
        std::thread producer([&] {
            for (int i = 0; i < count; ++i) {
                ASSERT_TRUE(queue.push(i));
                if (i % 97 == 0) // now and then the producer is the slow side
                    std::this_thread::sleep_for(std::chrono::milliseconds(1));
            }
            queue.close();
        });
        int expected = 0;
        while (std::optional<int> item = queue.pop())
            ASSERT_EQ(*item, expected++);
        producer.join();
        EXPECT_EQ(expected, count);
    }
}

TEST(BoundedQueue, AConsumerThatStopsReleasesAProducerWaitingForRoom)
{
    BoundedQueue<int> queue(2);
    std::atomic<int> pushed = 0;
    std::thread producer([&] {
        while (queue.push(pushed))
            ++pushed;
    });
    // The queue is full and the producer waits for room that never comes.
    while (pushed < 2)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    queue.cancel();
    producer.join();
    EXPECT_EQ(pushed, 2);
    EXPECT_FALSE(queue.pop());
}
