#include "math/KalviDspMatrix.h"

#include "files/KalviDspFile.h"
#include "files/KalviDspFileWriter.h"
#include "math/KalviDspVectorImplementation.h"
#include "text/KalviDspDisplayText.h"
#include "text/KalviDspStringHelper.h"
#include "threads/KalviDspPlatform.h"
#include "threads/KalviDspTime.h"

#include <array>
#include <cstdio>
#include <limits>
#include <sstream>
#include <utility>

namespace vlk {

namespace {

constexpr int matFileHeaderTextLength = 116;
constexpr std::int32_t miINT8 = 1;
constexpr std::int32_t miINT32 = 5;
constexpr std::int32_t miUINT32 = 6;
constexpr std::int32_t miDOUBLE = 9;
constexpr std::int32_t miMATRIX = 14;
constexpr std::int32_t doubleArrayClass = 6;
constexpr std::uint64_t matFileWordLength = 8;
// Behind the element's size word: the flags and the dimensions with their tags, and the tags of name and
// data.
constexpr std::uint64_t matFileElementFixedLength = 48;

template <typename T, typename ElementText>
void printRow(std::ostream& stream, const Matrix<T>& matrix, std::uint64_t row, ElementText elementText)
{
    for (std::uint64_t column = 0; column < matrix.getNumColumns(); ++column)
        stream << elementText(matrix(row, column)) << ' ';
}

template <typename T> String sizeText(const Matrix<T>& matrix)
{
    return toString(matrix.getNumRows()) + " x " + toString(matrix.getNumColumns());
}

template <typename T, typename ElementText>
void printPlainForm(std::ostream& stream, const Matrix<T>& matrix, const String& name,
                    ElementText elementText)
{
    stream << "matrix " << sizeText(matrix) << '\n';
    if (!name.empty())
        stream << name << " = \n";
    for (std::uint64_t row = 0; row < matrix.getNumRows(); ++row) {
        printRow(stream, matrix, row, elementText);
        stream << '\n';
    }
}

template <typename T, typename ElementText>
void printMatlabForm(std::ostream& stream, const Matrix<T>& matrix, const String& name,
                     ElementText elementText)
{
    stream << "% matrix " << sizeText(matrix) << '\n';
    if (!name.empty())
        stream << name << " = ";
    stream << "[ ...\n";
    for (std::uint64_t row = 0; row < matrix.getNumRows(); ++row) {
        printRow(stream, matrix, row, elementText);
        stream << "; ...\n";
    }
    stream << "...\n]; \n";
}

template <typename T, typename ElementText>
void printLatexForm(std::ostream& stream, const Matrix<T>& matrix, const String& name,
                    ElementText elementText)
{
    stream << "\\begin{equation}\n\\begin{pmatrix}\n";
    // The word "name" and not the argument's value: documents made from this form have always read so.
    if (!name.empty())
        stream << "name = \n";
    stream << "\\begin{array}{" << String(matrix.getNumColumns(), 'c') << "}\n";
    for (std::uint64_t row = 0; row < matrix.getNumRows(); ++row) {
        stream << (row == 0 ? "                     " : "\\noalign{\\smallskip} ");
        for (std::uint64_t column = 0; column < matrix.getNumColumns(); ++column) {
            if (column > 0)
                stream << " & ";
            stream << elementText(matrix(row, column)) << ' ';
        }
        // Ended behind the loop, not behind the last column, so that a row without columns keeps its line.
        stream << " \\\\ \n";
    }
    stream << "\\end{array}\n\\end{pmatrix}\n\\end{equation}\n";
}

auto decimalsText(int numDecimals)
{
    return [numDecimals](auto value) { return doubleToString(static_cast<double>(value), numDecimals); };
}

auto formattedText(const String& format)
{
    return [&format](auto value) { return formatNumber(format.c_str(), value); };
}

// The standard library has no stream over a FILE*, so the text is made whole first and written in one call.
template <typename Print> bool writeTextFile(const File& file, Print print)
{
    std::ostringstream text;
    print(text);
    const std::string& contents = text.str();
    FILE* handle = std::fopen(file.getFullPathName().c_str(), "w");
    if (handle == nullptr)
        return false;
    const bool written = std::fwrite(contents.data(), 1, contents.size(), handle) == contents.size();
    const bool closed = std::fclose(handle) == 0;
    return written && closed;
}

std::uint64_t paddedNameLength(const String& name)
{
    return (name.size() + matFileWordLength - 1) / matFileWordLength * matFileWordLength;
}

std::uint64_t matFileElementLength(const Matrix<double>& matrix, const String& name)
{
    return matFileElementFixedLength + paddedNameLength(name) + matrix.getNumElements() * sizeof(double);
}

// The format's dimensions are signed and its sizes unsigned 32-bit words; a matrix beyond them would give
// a file that reads back as something else, so it is refused before anything is written.
bool fitsInMatFile(const Matrix<double>& matrix, const String& name)
{
    constexpr std::uint64_t maxDimension = std::numeric_limits<std::int32_t>::max();
    constexpr std::uint64_t maxLength = std::numeric_limits<std::uint32_t>::max();
    if (matrix.getNumRows() > maxDimension || matrix.getNumColumns() > maxDimension ||
        name.size() > maxDimension)
        return false;
    return matrix.getNumElements() <=
           (maxLength - matFileElementFixedLength - paddedNameLength(name)) / sizeof(double);
}

bool writeWord(FileWriter& writer, std::uint64_t value)
{
    return writer.writeInt(static_cast<int>(static_cast<std::uint32_t>(value)));
}

bool writeTag(FileWriter& writer, std::int32_t type, std::uint64_t length)
{
    const bool typeWritten = writeWord(writer, static_cast<std::uint32_t>(type));
    const bool lengthWritten = writeWord(writer, length);
    return typeWritten && lengthWritten;
}

bool writeMatFileHeader(FileWriter& writer)
{
    const String date = getDateText(getCurrentTimeMilliseconds(), true, true, true, false, false);
    String text = "Created by Kalvi - " + String(platformName) + " - " + date;
    text.resize(matFileHeaderTextLength, ' ');
    bool ok = writer.write(text.data(), matFileHeaderTextLength);
    ok = writer.writeRepeatedByte(' ', 8) && ok;
    ok = writer.writeShort(0x0100) && ok;
    // Written in machine order: the reader tells the byte order of the file from these two bytes.
    return writer.writeShort(0x4D49) && ok;
}

bool writeArrayName(FileWriter& writer, const String& name)
{
    bool ok = writeTag(writer, miINT8, name.size());
    ok = writer.write(name.data(), static_cast<std::int64_t>(name.size())) && ok;
    // Blanks and not zeros: files written so have always been read back the same.
    const auto padding = static_cast<std::int64_t>(paddedNameLength(name) - name.size());
    return writer.writeRepeatedByte(' ', padding) && ok;
}

// The writer reaches the disk with one system call per write, so the column-major walk goes through a
// scratch block. Doubles fill whole 8-byte words, so the data needs no padding.
bool writeColumnMajor(FileWriter& writer, const Matrix<double>& matrix)
{
    std::array<double, 1024> scratch;
    std::size_t count = 0;
    bool ok = true;
    const auto flush = [&] {
        ok = writer.write(scratch.data(), static_cast<std::int64_t>(count * sizeof(double))) && ok;
        count = 0;
    };
    for (std::uint64_t column = 0; column < matrix.getNumColumns(); ++column) {
        for (std::uint64_t row = 0; row < matrix.getNumRows(); ++row) {
            scratch[count++] = matrix(row, column);
            if (count == scratch.size())
                flush();
        }
    }
    if (count > 0)
        flush();
    return ok;
}

bool writeMatFileElement(FileWriter& writer, const Matrix<double>& matrix, const String& name)
{
    bool ok = writeWord(writer, miMATRIX);
    const std::int64_t lengthPosition = writer.getPosition();
    // A place holder: the length is filled in once the element is complete.
    ok = writeWord(writer, 0) && ok;
    ok = writeTag(writer, miUINT32, 8) && ok;
    ok = writeWord(writer, doubleArrayClass) && ok;
    ok = writeWord(writer, 0) && ok;
    ok = writeTag(writer, miINT32, 8) && ok;
    ok = writeWord(writer, matrix.getNumRows()) && ok;
    ok = writeWord(writer, matrix.getNumColumns()) && ok;
    ok = writeArrayName(writer, name) && ok;
    ok = writeTag(writer, miDOUBLE, matrix.getNumElements() * sizeof(double)) && ok;
    ok = writeColumnMajor(writer, matrix) && ok;

    const std::int64_t endPosition = writer.getPosition();
    ok = writer.setPosition(lengthPosition) && ok;
    ok = writeWord(writer, matFileElementLength(matrix, name)) && ok;
    return writer.setPosition(endPosition) && ok;
}

bool writeMatFile(const Matrix<double>& matrix, const File& file, const String& name, bool overwrite)
{
    if (!fitsInMatFile(matrix, name))
        return false;
    if (!file.prepareForWriting(overwrite))
        return false;
    FileWriter writer(file);
    bool ok = writer.setPosition(0);
    ok = writeMatFileHeader(writer) && ok;
    return writeMatFileElement(writer, matrix, name) && ok;
}

} // namespace

template <typename T>
Matrix<T>::Matrix(std::uint64_t rows, std::uint64_t columns, T initialValue)
    : numRows(rows), numColumns(columns), numElements(rows * columns), data(numElements)
{
    for (T& element : data)
        element = initialValue;
}

template <typename T>
Matrix<T>::Matrix(const Matrix<OtherElement>& other)
    : numRows(other.getNumRows()), numColumns(other.getNumColumns()), numElements(other.getNumElements()),
      data(numElements)
{
    const OtherElement* source = other.getData();
    for (std::uint64_t index = 0; index < numElements; ++index)
        data[index] = static_cast<T>(source[index]);
}

template <typename T> void Matrix<T>::multiplyElements(const Matrix& other)
{
    if (numElements > 0)
        multiplyInPlace(data.data(), other.data.data(), numElements);
}

// The products work in a local vector and move it into result at the end, so that result may alias x.
template <typename T> void Matrix<T>::multiply(Vector<T>& result, const Vector<T>& x) const
{
    Vector<T> y(numRows);
    for (std::uint64_t row = 0; row < numRows; ++row) {
        T sum = 0;
        for (std::uint64_t column = 0; column < numColumns; ++column)
            sum += (*this)(row, column) * x[column];
        y[row] = sum;
    }
    result = std::move(y);
}

template <typename T> void Matrix<T>::multiply(Matrix& result, const Vector<T>& x) const
{
    Vector<T> y;
    multiply(y, x);
    result = Matrix(numRows, 1);
    for (std::uint64_t row = 0; row < numRows; ++row)
        result.data[row] = y[row];
}

template <typename T>
void Matrix<T>::multiply(Vector<std::complex<T>>& result, const Vector<std::complex<T>>& x) const
{
    Vector<std::complex<T>> y(numRows);
    for (std::uint64_t row = 0; row < numRows; ++row) {
        std::complex<T> sum = 0;
        for (std::uint64_t column = 0; column < numColumns; ++column)
            sum += (*this)(row, column) * x[column];
        y[row] = sum;
    }
    result = std::move(y);
}

template <typename T> void Matrix<T>::print(std::ostream& stream, int numDecimals, const String& name) const
{
    printPlainForm(stream, *this, name, decimalsText(numDecimals));
}

template <typename T>
void Matrix<T>::printMatlab(std::ostream& stream, int numDecimals, const String& name) const
{
    printMatlabForm(stream, *this, name, decimalsText(numDecimals));
}

template <typename T>
void Matrix<T>::printLatex(std::ostream& stream, int numDecimals, const String& name) const
{
    printLatexForm(stream, *this, name, decimalsText(numDecimals));
}

template <typename T>
void Matrix<T>::print(std::ostream& stream, const String& format, const String& name) const
{
    printPlainForm(stream, *this, name, formattedText(format));
}

template <typename T>
void Matrix<T>::printMatlab(std::ostream& stream, const String& format, const String& name) const
{
    printMatlabForm(stream, *this, name, formattedText(format));
}

template <typename T>
void Matrix<T>::printLatex(std::ostream& stream, const String& format, const String& name) const
{
    printLatexForm(stream, *this, name, formattedText(format));
}

template <typename T>
bool Matrix<T>::writeToTextFile(const File& file, int numDecimals, const String& name) const
{
    return writeTextFile(file, [&](std::ostream& stream) { print(stream, numDecimals, name); });
}

template <typename T>
bool Matrix<T>::writeToTextFile(const File& file, const String& format, const String& name) const
{
    return writeTextFile(file, [&](std::ostream& stream) { print(stream, format, name); });
}

template <typename T>
bool Matrix<T>::writeToMatFile(const File& file, const String& name, bool overwrite) const
{
    if constexpr (std::is_same_v<T, double>)
        return writeMatFile(*this, file, name, overwrite);
    else
        return writeMatFile(Matrix<double>(*this), file, name, overwrite);
}

template class Matrix<float>;
template class Matrix<double>;

} // namespace vlk
