#include "KalviDspHostAtomDelivery.h"

#include "ext_sysmem.h"

#include <algorithm>

namespace vlk::host {

t_max_err deliverAtoms(const std::vector<t_atom>& atoms, long* ac, t_atom** av)
{
    if (ac == nullptr || av == nullptr)
        return MAX_ERR_INVALID_PTR;
    const long count = static_cast<long>(atoms.size());
    if (*ac > 0 && *av != nullptr) {
        const long written = count < *ac ? count : *ac;
        std::copy(atoms.begin(), atoms.begin() + written, *av);
        *ac = written;
        return MAX_ERR_NONE;
    }
    *av = reinterpret_cast<t_atom*>(sysmem_newptr(sizeof(t_atom) * atoms.size()));
    if (*av == nullptr) {
        *ac = 0;
        return MAX_ERR_OUT_OF_MEM;
    }
    // An empty value has no array to copy from: std::copy, unlike memcpy, takes that.
    std::copy(atoms.begin(), atoms.end(), *av);
    *ac = count;
    return MAX_ERR_NONE;
}

} // namespace vlk::host
