// Blocks carry their size in a header in front of them, so that sysmem_ptrsize can answer.
#include "ext_sysmem.h"

#include <cstdlib>
#include <cstring>

namespace {

struct alignas(16) BlockHeader
{
    t_ptr_size size;
};

BlockHeader* headerOf(void* ptr)
{
    return static_cast<BlockHeader*>(ptr) - 1;
}

t_ptr allocate(t_ptr_size size, bool clear)
{
    void* raw = clear ? std::calloc(1, sizeof(BlockHeader) + size) : std::malloc(sizeof(BlockHeader) + size);
    if (raw == nullptr)
        return nullptr;
    auto* header = static_cast<BlockHeader*>(raw);
    header->size = size;
    return reinterpret_cast<t_ptr>(header + 1);
}

t_ptr resize(void* ptr, t_ptr_size newsize, bool clear)
{
    if (ptr == nullptr)
        return allocate(newsize, clear);
    t_ptr_size oldsize = headerOf(ptr)->size;
    void* raw = std::realloc(headerOf(ptr), sizeof(BlockHeader) + newsize);
    if (raw == nullptr)
        return nullptr;
    auto* header = static_cast<BlockHeader*>(raw);
    header->size = newsize;
    auto* block = reinterpret_cast<t_ptr>(header + 1);
    if (clear && newsize > oldsize)
        std::memset(block + oldsize, 0, newsize - oldsize);
    return block;
}

} // namespace

t_ptr sysmem_newptr(t_ptr_size size)
{
    return allocate(size, false);
}

t_ptr sysmem_newptrclear(t_ptr_size size)
{
    return allocate(size, true);
}

t_ptr sysmem_resizeptr(void* ptr, t_ptr_size newsize)
{
    return resize(ptr, newsize, false);
}

t_ptr sysmem_resizeptrclear(void* ptr, t_ptr_size newsize)
{
    return resize(ptr, newsize, true);
}

t_ptr_size sysmem_ptrsize(void* ptr)
{
    return ptr == nullptr ? 0 : headerOf(ptr)->size;
}

void sysmem_freeptr(void* ptr)
{
    if (ptr != nullptr)
        std::free(headerOf(ptr));
}

void sysmem_copyptr(const void* src, void* dst, t_ptr_size bytes)
{
    std::memmove(dst, src, bytes);
}

t_handle sysmem_newhandle(t_ptr_size size)
{
    auto handle = reinterpret_cast<t_handle>(sysmem_newptr(sizeof(char*)));
    if (handle != nullptr)
        *handle = sysmem_newptr(size);
    return handle;
}

t_handle sysmem_newhandleclear(t_ptr_size size)
{
    auto handle = reinterpret_cast<t_handle>(sysmem_newptr(sizeof(char*)));
    if (handle != nullptr)
        *handle = sysmem_newptrclear(size);
    return handle;
}

t_max_err sysmem_resizehandle(t_handle handle, t_ptr_size newsize)
{
    if (handle == nullptr)
        return -2;
    t_ptr block = sysmem_resizeptr(*handle, newsize);
    if (block == nullptr)
        return -4;
    *handle = block;
    return 0;
}

t_ptr_size sysmem_handlesize(t_handle handle)
{
    return handle == nullptr ? 0 : sysmem_ptrsize(*handle);
}

void sysmem_freehandle(t_handle handle)
{
    if (handle == nullptr)
        return;
    sysmem_freeptr(*handle);
    sysmem_freeptr(handle);
}
