#include "dsp/KalviDspInletsOutletsConnectionsStatus.h"

#include <algorithm>

namespace vlk {

InletsOutletsConnectionsStatus::InletsOutletsConnectionsStatus(std::uint32_t numInlets,
                                                               std::uint32_t numOutlets)
    : inletStatus(numInlets), outletStatus(numOutlets)
{
    std::fill(inletStatus.begin(), inletStatus.end(), short(1));
    std::fill(outletStatus.begin(), outletStatus.end(), short(1));
}

InletsOutletsConnectionsStatus::~InletsOutletsConnectionsStatus() = default;

void InletsOutletsConnectionsStatus::setNumInlets(std::uint32_t) {}

void InletsOutletsConnectionsStatus::reset() {}

void InletsOutletsConnectionsStatus::setConnections(const short* counts)
{
    const std::size_t numInlets = inletStatus.size();
    for (std::size_t inlet = 0; inlet < numInlets; ++inlet)
        inletStatus[inlet] = counts[inlet] > 0 ? 1 : 0;
    for (std::size_t outlet = 0; outlet < outletStatus.size(); ++outlet)
        outletStatus[outlet] = counts[numInlets + outlet] > 0 ? 1 : 0;
}

void InletsOutletsConnectionsStatus::setNumInletsStatus(std::uint32_t numInlets)
{
    if (inletStatus.size() == numInlets)
        return;
    inletStatus.resize(numInlets);
    setNumInlets(numInlets);
    std::fill(inletStatus.begin(), inletStatus.end(), short(1));
    reset();
}

void InletsOutletsConnectionsStatus::setNumOutletsStatus(std::uint32_t numOutlets)
{
    if (outletStatus.size() == numOutlets)
        return;
    outletStatus.resize(numOutlets);
    std::fill(outletStatus.begin(), outletStatus.end(), short(1));
}

bool InletsOutletsConnectionsStatus::isInletConnected(std::uint32_t inlet) const noexcept
{
    return inlet < inletStatus.size() && inletStatus[inlet] == 1;
}

bool InletsOutletsConnectionsStatus::isOutletConnected(std::uint32_t outlet) const noexcept
{
    return outlet < outletStatus.size() && outletStatus[outlet] == 1;
}

bool InletsOutletsConnectionsStatus::hasConnectedOutlet() const noexcept
{
    return std::find(outletStatus.begin(), outletStatus.end(), short(1)) != outletStatus.end();
}

} // namespace vlk
