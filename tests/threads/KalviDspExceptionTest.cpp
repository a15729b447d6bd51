#include "threads/KalviDspException.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <unistd.h>

namespace vlk {
namespace {

// The system log echoes each report on standard error behind the identifier and the process number, with
// the line feed that the log adds.
String logged(const String& report)
{
    return "vlk[" + std::to_string(getpid()) + "]: " + report + "\n";
}

std::size_t countOccurrences(const std::string& text, const std::string& part)
{
    std::size_t count = 0;
    for (auto position = text.find(part); position != std::string::npos;
         position = text.find(part, position + 1))
        ++count;
    return count;
}

TEST(ExceptionReport, VerboseNamesTheLastComponentOfTheSourcePathInQuotes)
{
    testing::internal::CaptureStderr();
    const Exception exception(String("Couldnt open file \"a.wav\""), "/some/where/src/KalviDspFile.cpp", 42);
    const std::string output = testing::internal::GetCapturedStderr();

    EXPECT_EQ(exception.file, "KalviDspFile.cpp");
    EXPECT_EQ(exception.line, 42u);
    EXPECT_STREQ(exception.what(), "Couldnt open file \"a.wav\"");
    EXPECT_EQ(output, logged("Exception occured in file \"KalviDspFile.cpp\" (line 42): \n"
                             "Couldnt open file \"a.wav\"\n\n"));
}

TEST(ExceptionReport, QuietFormHasNeitherFileNorLine)
{
    testing::internal::CaptureStderr();
    const Exception exception(String("out of memory occured in "), "", 0, false);
    const std::string output = testing::internal::GetCapturedStderr();

    EXPECT_TRUE(exception.file.empty());
    EXPECT_EQ(output, logged("Exception occured : out of memory occured in \n\n"));
}

TEST(ExceptionReport, StandardExceptionLendsItsText)
{
    testing::internal::CaptureStderr();
    const Exception exception(std::runtime_error("boom"), "x.cpp", 7);
    testing::internal::GetCapturedStderr();
    EXPECT_STREQ(exception.what(), "boom");
}

TEST(ExceptionReport, UnknownExceptionSaysSo)
{
    testing::internal::CaptureStderr();
    const UnknownException exception("y.cpp", 9);
    const std::string output = testing::internal::GetCapturedStderr();
    EXPECT_STREQ(exception.what(), "unknown exception");
    EXPECT_NE(output.find("(line 9): \nunknown exception\n"), std::string::npos);
}

TEST(TranslationBlock, RethrowsLibraryExceptionWithNewSiteAndLogsTwice)
{
    testing::internal::CaptureStderr();
    try {
        translateExceptions([] { throw Exception(String("inner failure"), "inner.cpp", 1); });
        FAIL() << "nothing was thrown";
    } catch (const Exception& exception) {
        EXPECT_EQ(exception.message, "inner failure");
        EXPECT_EQ(exception.file, "KalviDspExceptionTest.cpp");
        EXPECT_NE(exception.line, 1u);
    }
    const std::string output = testing::internal::GetCapturedStderr();
    EXPECT_EQ(countOccurrences(output, "inner failure"), 2u);
    EXPECT_EQ(countOccurrences(output, "\"inner.cpp\" (line 1)"), 1u);
}

TEST(TranslationBlock, WrapsForeignExceptions)
{
    testing::internal::CaptureStderr();
    EXPECT_THROW(
        {
            try {
                translateExceptions([] { throw std::length_error("too long"); });
            } catch (const Exception& exception) {
                EXPECT_STREQ(exception.what(), "too long");
                throw;
            }
        },
        Exception);
    EXPECT_THROW(translateExceptions([] { throw 3; }), UnknownException);
    testing::internal::GetCapturedStderr();
}

TEST(TranslationBlock, PassesResultsThrough)
{
    EXPECT_EQ(translateExceptions([] { return 17; }), 17);
}

} // namespace
} // namespace vlk
