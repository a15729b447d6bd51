#pragma once

#include "threads/KalviDspCallStack.h"
#include "threads/KalviDspException.h"

#include <algorithm>
#include <cstddef>
#include <initializer_list>
#include <new>
#include <vector>

namespace vlk {

// The library's growable array. Every allocating operation turns a failure into vlk::Exception, so the one
// failure convention holds for containers too. Element pointers are not owned.
template <typename T> class Vector
{
public:
    using value_type = T;
    using iterator = typename std::vector<T>::iterator;
    using const_iterator = typename std::vector<T>::const_iterator;

    Vector() = default;
    explicit Vector(std::size_t size) { resize(size); }
    Vector(std::initializer_list<T> values) : elements(values) {}
    Vector(const Vector&) = default;
    Vector(Vector&&) noexcept = default;
    Vector& operator=(const Vector&) = default;
    Vector& operator=(Vector&&) noexcept = default;
    virtual ~Vector() = default;

    // Growth appends zeroed elements; shrinking keeps the capacity.
    void resize(std::size_t newSize)
    {
        if (newSize == elements.size())
            return;
        try {
            elements.resize(newSize, T{});
        } catch (const std::bad_alloc&) {
            throw Exception("out of memory occured in " + getCallerName(), "", 0, false);
        } catch (const std::exception& exception) {
            throw Exception("exception " + String(exception.what()) + " occured in " + getCallerName(), "", 0,
                            false);
        } catch (...) {
            throw Exception("unknown exception occured in " + getCallerName(), "", 0, false);
        }
    }

    // Grows by doubling: the new capacity is the larger of twice the capacity and size + 1.
    void push_back(const T& value)
    {
        try {
            if (elements.size() == elements.capacity())
                elements.reserve(std::max(2 * elements.capacity(), elements.size() + 1));
            elements.push_back(value);
        } catch (const std::bad_alloc&) {
            throw Exception("out of memory occured", __FILE__, __LINE__);
        } catch (const std::exception& exception) {
            throw Exception("exception " + String(exception.what()) + " occured", __FILE__, __LINE__);
        } catch (...) {
            throw UnknownException(__FILE__, __LINE__);
        }
    }

    // Moves the tail one place down; an index out of range changes nothing.
    void removeAt(std::size_t index)
    {
        if (index < elements.size())
            elements.erase(elements.begin() + static_cast<std::ptrdiff_t>(index));
    }

    void clear() noexcept { elements.clear(); }
    std::size_t size() const noexcept { return elements.size(); }
    std::size_t capacity() const noexcept { return elements.capacity(); }
    bool empty() const noexcept { return elements.empty(); }

    T& operator[](std::size_t index) noexcept { return elements[index]; }
    const T& operator[](std::size_t index) const noexcept { return elements[index]; }
    T* data() noexcept { return elements.data(); }
    const T* data() const noexcept { return elements.data(); }
    T& back() noexcept { return elements.back(); }
    const T& back() const noexcept { return elements.back(); }

    iterator begin() noexcept { return elements.begin(); }
    iterator end() noexcept { return elements.end(); }
    const_iterator begin() const noexcept { return elements.begin(); }
    const_iterator end() const noexcept { return elements.end(); }

    bool operator==(const Vector& other) const { return elements == other.elements; }

private:
    std::vector<T> elements;
};

} // namespace vlk
