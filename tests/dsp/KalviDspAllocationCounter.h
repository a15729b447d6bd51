#pragma once

#include <cstddef>

namespace vlk::test {

// Counts the allocations of operator new made on this thread while a scope lives. The test program's global
// operator new and delete are replaced for it.
class AllocationCountingScope
{
public:
    AllocationCountingScope();
    ~AllocationCountingScope();
    AllocationCountingScope(const AllocationCountingScope&) = delete;
    AllocationCountingScope& operator=(const AllocationCountingScope&) = delete;

    std::size_t getCount() const;

private:
    std::size_t countAtStart;
};

} // namespace vlk::test
