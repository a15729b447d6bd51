#include "math/KalviDspVector.h"

#include <gtest/gtest.h>

#include <limits>
#include <stdexcept>

namespace vlk {
namespace {

// An element whose copy fails the way the test asks, to reach each translation clause.
struct FailingCopy
{
    enum class Failure
    {
        none,
        outOfMemory,
        standard,
        foreign
    };

    // What a default-built element carries, so that resize's zero element fails on copy.
    static inline Failure plannedFailure = Failure::none;

    FailingCopy() : failure(plannedFailure) {}
    explicit FailingCopy(Failure failure) : failure(failure) {}
    FailingCopy(const FailingCopy& other) : failure(other.failure)
    {
        if (failure == Failure::outOfMemory)
            throw std::bad_alloc();
        if (failure == Failure::standard)
            throw std::runtime_error("copy refused");
        if (failure == Failure::foreign)
            throw 5;
    }
    FailingCopy& operator=(const FailingCopy&) = default;

    Failure failure;
};

TEST(VectorResize, SameSizeAllocatesNothing)
{
    Vector<int> values(4);
    const int* storage = values.data();
    values.resize(4);
    EXPECT_EQ(values.data(), storage);
}

TEST(VectorResize, GrowthZeroesAndShrinkKeepsCapacity)
{
    Vector<double> values;
    values.resize(3);
    EXPECT_EQ(values, (Vector<double>{0.0, 0.0, 0.0}));
    values[2] = 5.0;
    values.resize(1000);
    EXPECT_EQ(values[2], 5.0);
    EXPECT_EQ(values[999], 0.0);
    const std::size_t capacity = values.capacity();
    values.resize(2);
    EXPECT_EQ(values.capacity(), capacity);
    values.resize(3);
    EXPECT_EQ(values[2], 0.0) << "a regrown element must be zeroed again";
}

TEST(VectorResize, FailuresBecomeQuietLibraryExceptions)
{
    testing::internal::CaptureStderr();
    Vector<char> bytes;
    try {
        bytes.resize(std::numeric_limits<std::size_t>::max());
        FAIL() << "a size above the maximum must fail";
    } catch (const Exception& exception) {
        EXPECT_EQ(exception.message.rfind("exception ", 0), 0u);
        EXPECT_EQ(exception.message.substr(exception.message.size() - 12), " occured in ");
        EXPECT_TRUE(exception.file.empty());
        EXPECT_EQ(exception.line, 0u);
    }

    const std::string output = testing::internal::GetCapturedStderr();
    EXPECT_NE(output.find("Exception occured : exception "), std::string::npos);
}

TEST(VectorResize, EachKindOfFailureHasItsText)
{
    // resize copies a zero element into each new place, so an element whose copies fail reaches each clause.
    const auto messageOfResizeWith = [](FailingCopy::Failure failure) -> String {
        FailingCopy::plannedFailure = failure;
        Vector<FailingCopy> target;
        try {
            target.resize(2);
        } catch (const Exception& exception) {
            FailingCopy::plannedFailure = FailingCopy::Failure::none;
            EXPECT_TRUE(exception.file.empty());
            return exception.message;
        }
        FailingCopy::plannedFailure = FailingCopy::Failure::none;
        return String("no failure");
    };
    testing::internal::CaptureStderr();
    EXPECT_EQ(messageOfResizeWith(FailingCopy::Failure::outOfMemory), "out of memory occured in ");
    EXPECT_EQ(messageOfResizeWith(FailingCopy::Failure::standard), "exception copy refused occured in ");
    EXPECT_EQ(messageOfResizeWith(FailingCopy::Failure::foreign), "unknown exception occured in ");
    EXPECT_EQ(messageOfResizeWith(FailingCopy::Failure::none), "no failure");
    testing::internal::GetCapturedStderr();
}

TEST(VectorPushBack, GrowsByDoubling)
{
    Vector<int> values;
    Vector<std::size_t> capacities;
    for (int i = 0; i < 9; ++i) {
        values.push_back(i);
        capacities.push_back(values.capacity());
    }
    EXPECT_EQ(capacities, (Vector<std::size_t>{1, 2, 4, 4, 8, 8, 8, 8, 16}));
    EXPECT_EQ(values[8], 8);
}

TEST(VectorPushBack, FailuresNameTheVectorsSourceFile)
{
    testing::internal::CaptureStderr();
    Vector<FailingCopy> elements;
    const auto failureOf = [&](FailingCopy::Failure failure) -> String {
        try {
            elements.push_back(FailingCopy(failure));
        } catch (const UnknownException& exception) {
            return "unknown:" + exception.message;
        } catch (const Exception& exception) {
            EXPECT_EQ(exception.file, "KalviDspVector.h");
            EXPECT_NE(exception.line, 0u);
            return exception.message;
        }
        return String("no failure");
    };
    EXPECT_EQ(failureOf(FailingCopy::Failure::outOfMemory), "out of memory occured");
    EXPECT_EQ(failureOf(FailingCopy::Failure::standard), "exception copy refused occured");
    EXPECT_EQ(failureOf(FailingCopy::Failure::foreign), "unknown:unknown exception");
    EXPECT_EQ(failureOf(FailingCopy::Failure::none), "no failure");
    EXPECT_EQ(elements.size(), 1u);
    const std::string output = testing::internal::GetCapturedStderr();
    EXPECT_NE(output.find("Exception occured in file \"KalviDspVector.h\""), std::string::npos);
}

TEST(VectorRemoveAt, ClosesTheGapAndIgnoresIndicesOutOfRange)
{
    Vector<int> values{1, 2, 3, 4};
    values.removeAt(1);
    EXPECT_EQ(values, (Vector<int>{1, 3, 4}));
    values.removeAt(3);
    values.removeAt(static_cast<std::size_t>(-1));
    EXPECT_EQ(values, (Vector<int>{1, 3, 4}));
}

} // namespace
} // namespace vlk
