#pragma once

#include "math/KalviDspVector.h"

#include <cstdint>

namespace vlk {

// Which signal inputs and outputs of a processor are connected in the host. Until the host says otherwise,
// everything counts as connected. Written from dsp64 while audio is stopped, read on the audio thread.
class InletsOutletsConnectionsStatus
{
public:
    InletsOutletsConnectionsStatus(std::uint32_t numInlets, std::uint32_t numOutlets);
    virtual ~InletsOutletsConnectionsStatus();

    // Resizes the per-input state of a derived class; nothing here.
    virtual void setNumInlets(std::uint32_t numInlets);
    // Brings the per-input state of a derived class back to its start; nothing here.
    virtual void reset();

    // counts: the host's connection count of each input, then of each output.
    void setConnections(const short* counts);
    // No-ops when the count is unchanged; otherwise every entry counts as connected again.
    void setNumInletsStatus(std::uint32_t numInlets);
    void setNumOutletsStatus(std::uint32_t numOutlets);

    // An index beyond the status counts as not connected.
    bool isInletConnected(std::uint32_t inlet) const noexcept;
    bool isOutletConnected(std::uint32_t outlet) const noexcept;
    // False when there is no output at all.
    bool hasConnectedOutlet() const noexcept;

protected:
    // 1 when connected, 0 when not.
    Vector<short> inletStatus;
    Vector<short> outletStatus;
};

} // namespace vlk
