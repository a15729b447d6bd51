#pragma once

#include "math/KalviDspVector.h"
#include "text/KalviDspString.h"

#include <complex>
#include <cstdint>
#include <ostream>
#include <type_traits>

namespace vlk {

class File;

// The library's dense two-dimensional array of float or double, stored row-major: element (row, column) is
// at numColumns * row + column. Not locked.
template <typename T> class Matrix
{
public:
    // The element type of the converting copy: float for double and double for float.
    using OtherElement = std::conditional_t<std::is_same_v<T, float>, double, float>;

    explicit Matrix(std::uint64_t rows = 0, std::uint64_t columns = 0, T initialValue = T(0));
    // Explicit so that a narrowing from double never happens unseen.
    explicit Matrix(const Matrix<OtherElement>& other);
    Matrix(const Matrix&) = default;
    Matrix(Matrix&&) noexcept = default;
    Matrix& operator=(const Matrix&) = default;
    Matrix& operator=(Matrix&&) noexcept = default;
    virtual ~Matrix() = default;

    std::uint64_t getNumRows() const noexcept { return numRows; }
    std::uint64_t getNumColumns() const noexcept { return numColumns; }
    std::uint64_t getNumElements() const noexcept { return numElements; }
    // The numElements elements, row-major.
    T* getData() noexcept { return data.data(); }
    const T* getData() const noexcept { return data.data(); }
    T& operator()(std::uint64_t row, std::uint64_t column) noexcept
    {
        return data[numColumns * row + column];
    }
    const T& operator()(std::uint64_t row, std::uint64_t column) const noexcept
    {
        return data[numColumns * row + column];
    }

    // In place, over this matrix's numElements: other must hold at least as many, which is not checked.
    virtual void multiplyElements(const Matrix& other);
    // y = A x, adding over the columns from left to right in T. x must hold numColumns elements, which is
    // not checked. result may be x itself.
    virtual void multiply(Vector<T>& result, const Vector<T>& x) const;
    // The same with result made numRows by 1.
    virtual void multiply(Matrix& result, const Vector<T>& x) const;
    virtual void multiply(Vector<std::complex<T>>& result, const Vector<std::complex<T>>& x) const;

    // Text forms: elements through doubleToString with numDecimals, or through a printf format.
    virtual void print(std::ostream& stream, int numDecimals, const String& name) const;
    virtual void printMatlab(std::ostream& stream, int numDecimals, const String& name) const;
    virtual void printLatex(std::ostream& stream, int numDecimals, const String& name) const;
    virtual void print(std::ostream& stream, const String& format, const String& name) const;
    virtual void printMatlab(std::ostream& stream, const String& format, const String& name) const;
    virtual void printLatex(std::ostream& stream, const String& format, const String& name) const;

    // The plain form in a file opened with fopen "w"; true when opening, writing and closing succeeded.
    virtual bool writeToTextFile(const File& file, int numDecimals, const String& name) const;
    virtual bool writeToTextFile(const File& file, const String& format, const String& name) const;

    // A Level 5 MAT-file holding this matrix as one real double array; a file there before goes to the Trash
    // when overwrite is set. Throws vlk::Exception when the file exists and overwrite is clear, or when it
    // cannot be cleared, created or opened. False when the sizes do not fit the format's 32-bit fields
    // (nothing is written then) or when a write fell short.
    virtual bool writeToMatFile(const File& file, const String& name, bool overwrite) const;

private:
    std::uint64_t numRows;
    std::uint64_t numColumns;
    std::uint64_t numElements;
    Vector<T> data;
};

extern template class Matrix<float>;
extern template class Matrix<double>;

} // namespace vlk
