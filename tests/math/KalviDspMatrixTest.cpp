#include "math/KalviDspMatrix.h"

#include "files/KalviDspFile.h"
#include "text/KalviDspDisplayText.h"
#include "threads/KalviDspTime.h"

#include <gtest/gtest.h>

#include <bit>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <vector>

namespace vlk {
namespace {

// 2 by 3: 1 2 3 / 4 5 6, whose column-major order is 1 4 2 5 3 6.
Matrix<double> oneToSix()
{
    Matrix<double> matrix(2, 3);
    for (std::uint64_t index = 0; index < 6; ++index)
        matrix.getData()[index] = static_cast<double>(index + 1);
    return matrix;
}

// 2 by 2: 1 -2.5 / 0.25 3.
Matrix<double> smallMixed()
{
    Matrix<double> matrix(2, 2);
    matrix(0, 0) = 1.0;
    matrix(0, 1) = -2.5;
    matrix(1, 0) = 0.25;
    matrix(1, 1) = 3.0;
    return matrix;
}

template <typename Print> std::string printed(Print print)
{
    std::ostringstream stream;
    print(stream);
    return stream.str();
}

class ScratchFolder
{
public:
    ScratchFolder()
    {
        char pattern[] = "/tmp/velur-matrix-XXXXXX";
        path = mkdtemp(pattern) != nullptr ? pattern : "";
    }
    ~ScratchFolder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(static_cast<const std::string&>(path), ignored);
    }
    String pathOf(const char* name) const { return path + "/" + name; }

private:
    String path;
};

std::vector<unsigned char> readBytes(const String& path)
{
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

std::string readText(const String& path)
{
    const auto bytes = readBytes(path);
    return {bytes.begin(), bytes.end()};
}

std::uint32_t wordAt(const std::vector<unsigned char>& bytes, std::size_t offset)
{
    std::uint32_t word;
    std::memcpy(&word, bytes.data() + offset, sizeof word);
    return word;
}

double doubleAt(const std::vector<unsigned char>& bytes, std::size_t offset)
{
    double value;
    std::memcpy(&value, bytes.data() + offset, sizeof value);
    return value;
}

TEST(MatrixConstruction, ConvertingCopyWidensExactlyAndKeepsTheShape)
{
    Matrix<float> single(2, 1);
    single(0, 0) = 0.1f;
    single(1, 0) = -1.0f / 3.0f;
    const Matrix<double> widened(single);
    EXPECT_EQ(widened.getNumRows(), 2u);
    EXPECT_EQ(widened.getNumColumns(), 1u);
    EXPECT_EQ(widened(0, 0), 0.100000001490116119384765625);
    EXPECT_EQ(widened(1, 0), static_cast<double>(-1.0f / 3.0f));

    const Matrix<float> narrowed(widened);
    EXPECT_EQ(narrowed(0, 0), 0.1f);
}

TEST(MatrixProducts, VectorProductOfRowMajorElements)
{
    Vector<double> result;
    oneToSix().multiply(result, Vector<double>{1.0, 1.0, 2.0});
    EXPECT_EQ(result, (Vector<double>{9.0, 21.0}));
}

TEST(MatrixProducts, MatrixResultBecomesOneColumn)
{
    Matrix<double> result(5, 5, 7.0);
    oneToSix().multiply(result, Vector<double>{1.0, 0.0, 0.0});
    EXPECT_EQ(result.getNumRows(), 2u);
    EXPECT_EQ(result.getNumColumns(), 1u);
    EXPECT_EQ(result(0, 0), 1.0);
    EXPECT_EQ(result(1, 0), 4.0);
}

TEST(MatrixProducts, ZeroColumnsGiveZeros)
{
    const Matrix<float> matrix(3, 0);
    Vector<float> result{9.0f, 9.0f, 9.0f, 9.0f};
    matrix.multiply(result, Vector<float>());
    EXPECT_EQ(result, (Vector<float>{0.0f, 0.0f, 0.0f}));

    Vector<std::complex<float>> complexResult{{9.0f, 9.0f}};
    matrix.multiply(complexResult, Vector<std::complex<float>>());
    ASSERT_EQ(complexResult.size(), 3u);
    EXPECT_EQ(complexResult[2], std::complex<float>(0.0f, 0.0f));
}

// 1 + 1e8 is 1e8 in float: a wider accumulator or another order would give 1.
TEST(MatrixProducts, AddsFromLeftToRightInTheElementType)
{
    Matrix<float> matrix(1, 3);
    matrix(0, 0) = 1.0f;
    matrix(0, 1) = 1e8f;
    matrix(0, 2) = -1e8f;
    Vector<float> result;
    matrix.multiply(result, Vector<float>{1.0f, 1.0f, 1.0f});
    EXPECT_EQ(result[0], 0.0f);
}

TEST(MatrixProducts, RealMatrixTimesComplexVector)
{
    Vector<std::complex<double>> result;
    oneToSix().multiply(result, Vector<std::complex<double>>{{1.0, -1.0}, {0.0, 2.0}, {0.5, 0.0}});
    ASSERT_EQ(result.size(), 2u);
    EXPECT_EQ(result[0], std::complex<double>(2.5, 3.0));
    EXPECT_EQ(result[1], std::complex<double>(7.0, 6.0));
}

TEST(MatrixProducts, ResultMayBeTheInputVector)
{
    Matrix<double> swapping(2, 2);
    swapping(0, 1) = 1.0;
    swapping(1, 0) = 1.0;
    Vector<double> x{3.0, 4.0};
    swapping.multiply(x, x);
    EXPECT_EQ(x, (Vector<double>{4.0, 3.0}));
}

TEST(MatrixElementwise, MultipliesInPlace)
{
    Matrix<double> matrix = oneToSix();
    matrix.multiplyElements(oneToSix());
    for (std::uint64_t index = 0; index < 6; ++index)
        EXPECT_EQ(matrix.getData()[index], static_cast<double>((index + 1) * (index + 1)));
}

TEST(MatrixText, PlainForm)
{
    const Matrix<double> matrix = smallMixed();
    EXPECT_EQ(printed([&](std::ostream& s) { matrix.print(s, 2, "a"); }),
              "matrix 2 x 2\na = \n1.00 -2.50 \n0.25 3.00 \n");
    EXPECT_EQ(printed([&](std::ostream& s) { matrix.print(s, String("%g"), ""); }),
              "matrix 2 x 2\n1 -2.5 \n0.25 3 \n");
}

TEST(MatrixText, MatlabForm)
{
    const Matrix<double> matrix = smallMixed();
    EXPECT_EQ(printed([&](std::ostream& s) { matrix.printMatlab(s, 2, "a"); }),
              "% matrix 2 x 2\na = [ ...\n1.00 -2.50 ; ...\n0.25 3.00 ; ...\n...\n]; \n");
    EXPECT_EQ(printed([&](std::ostream& s) { matrix.printMatlab(s, String("%.1f"), ""); }),
              "% matrix 2 x 2\n[ ...\n1.0 -2.5 ; ...\n0.2 3.0 ; ...\n...\n]; \n");
}

TEST(MatrixText, LatexFormPrintsTheWordNameAndIndentsTheFirstRow)
{
    const Matrix<double> matrix = smallMixed();
    EXPECT_EQ(printed([&](std::ostream& s) { matrix.printLatex(s, 2, "a"); }),
              "\\begin{equation}\n\\begin{pmatrix}\nname = \n\\begin{array}{cc}\n"
              "                     1.00  & -2.50  \\\\ \n"
              "\\noalign{\\smallskip} 0.25  & 3.00  \\\\ \n"
              "\\end{array}\n\\end{pmatrix}\n\\end{equation}\n");
    EXPECT_EQ(printed([&](std::ostream& s) { matrix.printLatex(s, String("%g"), ""); }),
              "\\begin{equation}\n\\begin{pmatrix}\n\\begin{array}{cc}\n"
              "                     1  & -2.5  \\\\ \n"
              "\\noalign{\\smallskip} 0.25  & 3  \\\\ \n"
              "\\end{array}\n\\end{pmatrix}\n\\end{equation}\n");
}

TEST(MatrixText, ZeroRowsPrintOnlyTheFrame)
{
    const Matrix<float> matrix(0, 3);
    EXPECT_EQ(printed([&](std::ostream& s) { matrix.print(s, 2, "z"); }), "matrix 0 x 3\nz = \n");
    EXPECT_EQ(printed([&](std::ostream& s) { matrix.printMatlab(s, 2, "z"); }),
              "% matrix 0 x 3\nz = [ ...\n...\n]; \n");
    EXPECT_EQ(printed([&](std::ostream& s) { matrix.printLatex(s, 2, ""); }),
              "\\begin{equation}\n\\begin{pmatrix}\n\\begin{array}{ccc}\n"
              "\\end{array}\n\\end{pmatrix}\n\\end{equation}\n");
}

TEST(MatrixTextFile, HoldsThePlainFormAndFailsInAMissingFolder)
{
    const ScratchFolder folder;
    const Matrix<double> matrix = smallMixed();
    ASSERT_TRUE(matrix.writeToTextFile(File(folder.pathOf("a.txt")), 2, "a"));
    EXPECT_EQ(readText(folder.pathOf("a.txt")), "matrix 2 x 2\na = \n1.00 -2.50 \n0.25 3.00 \n");
    ASSERT_TRUE(matrix.writeToTextFile(File(folder.pathOf("a.txt")), String("%g"), ""));
    EXPECT_EQ(readText(folder.pathOf("a.txt")), "matrix 2 x 2\n1 -2.5 \n0.25 3 \n");
    EXPECT_FALSE(matrix.writeToTextFile(File(folder.pathOf("missing/a.txt")), 2, "a"));
}

TEST(MatFileBytes, TwoByThreeNamedM)
{
    const ScratchFolder folder;
    const String path = folder.pathOf("m.mat");
    const String dateBefore = getDateText(getCurrentTimeMilliseconds(), true, true, true, false, false);
    ASSERT_TRUE(oneToSix().writeToMatFile(File(path), "m", false));
    const String dateAfter = getDateText(getCurrentTimeMilliseconds(), true, true, true, false, false);

    const auto bytes = readBytes(path);
    ASSERT_EQ(bytes.size(), 128u + 8 + 16 + 16 + 16 + 8 + 48);
    const std::string text(bytes.begin(), bytes.begin() + 116);
    const std::string banner = "Created by Kalvi - Mac OS - ";
    ASSERT_EQ(text.substr(0, banner.size()), banner);
    const std::string date = text.substr(banner.size(), dateBefore.size());
    EXPECT_TRUE(date == dateBefore || date == dateAfter) << date;
    EXPECT_EQ(text.find_first_not_of(' ', banner.size() + date.size()), std::string::npos);
    EXPECT_EQ(std::string(bytes.begin() + 116, bytes.begin() + 124), std::string(8, ' '));
    if constexpr (std::endian::native == std::endian::little) {
        EXPECT_EQ(std::string(bytes.begin() + 124, bytes.begin() + 128), std::string("\x00\x01IM", 4));
    }

    const std::vector<std::uint32_t> words{14, 104, 6, 8, 6, 0, 5, 8, 2, 3, 1, 1};
    for (std::size_t index = 0; index < words.size(); ++index)
        EXPECT_EQ(wordAt(bytes, 128 + 4 * index), words[index]) << "word " << index;
    EXPECT_EQ(std::string(bytes.begin() + 176, bytes.begin() + 184), "m       ");
    EXPECT_EQ(wordAt(bytes, 184), 9u);
    EXPECT_EQ(wordAt(bytes, 188), 48u);
    const double columnMajor[] = {1, 4, 2, 5, 3, 6};
    for (std::size_t index = 0; index < 6; ++index)
        EXPECT_EQ(doubleAt(bytes, 192 + 8 * index), columnMajor[index]) << "element " << index;
}

TEST(MatFileBytes, NamesArePaddedWithBlanksToWholeWords)
{
    const ScratchFolder folder;
    for (const String name : {"", "m", "abcdefgh", "abcdefghi"}) {
        const String path = folder.pathOf(("name" + std::to_string(name.size()) + ".mat").c_str());
        ASSERT_TRUE(oneToSix().writeToMatFile(File(path), name, false));
        const auto bytes = readBytes(path);
        const std::size_t padded = (name.size() + 7) / 8 * 8;
        ASSERT_EQ(bytes.size(), 128 + 56 + padded + 48) << name;
        EXPECT_EQ(wordAt(bytes, 132), 48 + padded + 48) << name;
        EXPECT_EQ(wordAt(bytes, 168), 1u) << name;
        EXPECT_EQ(wordAt(bytes, 172), name.size()) << name;
        const std::string written(bytes.begin() + 176, bytes.begin() + 176 + static_cast<long>(padded));
        EXPECT_EQ(written, std::string(name) + std::string(padded - name.size(), ' '));
        EXPECT_EQ(wordAt(bytes, 176 + padded), 9u) << name;
    }
}

// More elements than one block of the column-major walk, with more than one row so that the order shows.
TEST(MatFileBytes, LargeMatrixKeepsColumnMajorOrderAcrossBlocks)
{
    const ScratchFolder folder;
    Matrix<float> matrix(3, 1500);
    for (std::uint64_t index = 0; index < matrix.getNumElements(); ++index)
        matrix.getData()[index] = static_cast<float>(index);
    ASSERT_TRUE(matrix.writeToMatFile(File(folder.pathOf("large.mat")), "x", false));
    const auto bytes = readBytes(folder.pathOf("large.mat"));
    ASSERT_EQ(bytes.size(), 192u + 4500 * 8);
    for (std::uint64_t column = 0; column < 1500; ++column)
        for (std::uint64_t row = 0; row < 3; ++row)
            ASSERT_EQ(doubleAt(bytes, 192 + 8 * (3 * column + row)), matrix(row, column))
                << row << " " << column;
}

TEST(MatFileBytes, ExistingFileWithoutOverwriteThrows)
{
    const ScratchFolder folder;
    const File file(folder.pathOf("m.mat"));
    ASSERT_TRUE(oneToSix().writeToMatFile(file, "m", false));
    try {
        oneToSix().writeToMatFile(file, "m", false);
        FAIL() << "no exception";
    } catch (const Exception& exception) {
        EXPECT_EQ(exception.message, "File already exists \"" + file.getFullPathName() + "\"");
    }
    EXPECT_EQ(readBytes(file.getFullPathName()).size(), 240u);
}

TEST(MatFileBytes, DimensionBeyondThirtyTwoBitsIsRefusedBeforeWriting)
{
    const ScratchFolder folder;
    const File file(folder.pathOf("huge.mat"));
    EXPECT_FALSE(Matrix<double>(std::uint64_t(1) << 32, 0).writeToMatFile(file, "h", false));
    EXPECT_FALSE(file.existsAsFile());
}

// What scipy, an independent reader, finds in the files, as the script prints it.
std::string dumpWithScipy(const std::vector<String>& paths)
{
    const char* sourceDirectory = std::getenv("VELUR_SOURCE_DIR");
    if (sourceDirectory == nullptr) {
        ADD_FAILURE() << "VELUR_SOURCE_DIR is not set: run through ctest, or set it to the source root";
        return {};
    }
    if (std::system("/usr/bin/python3 -c 'import scipy.io' > /dev/null 2>&1") != 0) {
        ADD_FAILURE() << "python3-scipy is missing: /usr/bin/python3 cannot import scipy.io";
        return {};
    }
    std::string command =
        "/usr/bin/python3 '" + std::string(sourceDirectory) + "/tests/math/dump_mat_files.py'";
    for (const String& path : paths)
        command += " '" + path + "'";
    FILE* pipe = popen((command + " 2>&1").c_str(), "r");
    if (pipe == nullptr) {
        ADD_FAILURE() << "cannot run " << command;
        return {};
    }
    std::string output;
    char buffer[4096];
    for (std::size_t count; (count = std::fread(buffer, 1, sizeof buffer, pipe)) > 0;)
        output.append(buffer, count);
    EXPECT_EQ(pclose(pipe), 0) << output;
    return output;
}

TEST(MatFileScipy, ReadsNamesShapesAndExactValues)
{
    const ScratchFolder folder;
    std::vector<String> paths;
    const auto write = [&](const auto& matrix, const char* fileName, const String& name) {
        paths.push_back(folder.pathOf(fileName));
        ASSERT_TRUE(matrix.writeToMatFile(File(paths.back()), name, false));
    };
    write(oneToSix(), "m.mat", "m");
    write(Matrix<double>(1, 1, 0.5), "empty.mat", "");
    write(Matrix<double>(1, 2, -1.25), "name8.mat", "abcdefgh");
    write(Matrix<double>(2, 1, 1e-300), "name9.mat", "abcdefghi");
    Matrix<float> single(1, 2);
    single(0, 0) = 0.1f;
    single(0, 1) = -1.0f / 3.0f;
    write(single, "float.mat", "f");
    write(Matrix<double>(0, 3), "zerorows.mat", "z");
    Matrix<double> row(1, 5);
    for (std::uint64_t column = 0; column < 5; ++column)
        row(0, column) = 0.1 * static_cast<double>(column);
    write(row, "row.mat", "row");

    const std::string header = "header Created by Kalvi - Mac OS\n";
    EXPECT_EQ(dumpWithScipy(paths),
              "file m.mat\n" + header + "variable 'm' 2x3 float64\n1.0 2.0 3.0 4.0 5.0 6.0\n" +
                  "file empty.mat\n" + header + "variable '__function_workspace__' 1x1 float64\n0.5\n" +
                  "file name8.mat\n" + header + "variable 'abcdefgh' 1x2 float64\n-1.25 -1.25\n" +
                  "file name9.mat\n" + header + "variable 'abcdefghi' 2x1 float64\n1e-300 1e-300\n" +
                  "file float.mat\n" + header +
                  "variable 'f' 1x2 float64\n0.10000000149011612 -0.3333333432674408\n" +
                  "file zerorows.mat\n" + header + "variable 'z' 0x3 float64\n\n" + "file row.mat\n" +
                  header + "variable 'row' 1x5 float64\n0.0 0.1 0.2 0.30000000000000004 0.4\n");
}

} // namespace
} // namespace vlk
