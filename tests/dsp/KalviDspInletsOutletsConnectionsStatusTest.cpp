#include "dsp/KalviDspInletsOutletsConnectionsStatus.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace vlk {
namespace {

// Tells which of the hooks for derived state ran, and with what.
class RecordingStatus : public InletsOutletsConnectionsStatus
{
public:
    using InletsOutletsConnectionsStatus::InletsOutletsConnectionsStatus;

    void setNumInlets(std::uint32_t numInlets) override
    {
        events.push_back("inlets " + std::to_string(numInlets));
    }
    void reset() override { events.push_back("reset"); }

    std::vector<std::string> events;
};

TEST(InletsOutletsConnectionsStatusConnections, EverythingCountsAsConnectedUntilTheHostSpeaks)
{
    const InletsOutletsConnectionsStatus status(2, 3);
    EXPECT_TRUE(status.isInletConnected(0));
    EXPECT_TRUE(status.isInletConnected(1));
    EXPECT_TRUE(status.isOutletConnected(2));
    EXPECT_TRUE(status.hasConnectedOutlet());
    EXPECT_FALSE(status.isInletConnected(2));
    EXPECT_FALSE(status.isOutletConnected(3));
}

TEST(InletsOutletsConnectionsStatusConnections, CountsAboveZeroConnectInputsFirstThenOutputs)
{
    InletsOutletsConnectionsStatus status(2, 3);
    const short counts[] = {0, 3, 1, -1, 0};
    status.setConnections(counts);
    EXPECT_FALSE(status.isInletConnected(0));
    EXPECT_TRUE(status.isInletConnected(1));
    EXPECT_TRUE(status.isOutletConnected(0));
    EXPECT_FALSE(status.isOutletConnected(1));
    EXPECT_FALSE(status.isOutletConnected(2));
    EXPECT_TRUE(status.hasConnectedOutlet());
    const short none[] = {1, 1, 0, 0, 0};
    status.setConnections(none);
    EXPECT_FALSE(status.hasConnectedOutlet());
}

TEST(InletsOutletsConnectionsStatusConnections, NoOutputsMeansNoneConnected)
{
    EXPECT_FALSE(InletsOutletsConnectionsStatus(1, 0).hasConnectedOutlet());
}

TEST(InletsOutletsConnectionsStatusSizes, NewInputCountReconnectsAllAndResetsTheDerivedState)
{
    RecordingStatus status(2, 1);
    const short counts[] = {0, 0, 0};
    status.setConnections(counts);
    status.setNumInletsStatus(2);
    EXPECT_TRUE(status.events.empty());
    EXPECT_FALSE(status.isInletConnected(0));
    status.setNumInletsStatus(3);
    EXPECT_EQ(status.events, (std::vector<std::string>{"inlets 3", "reset"}));
    for (std::uint32_t inlet = 0; inlet < 3; ++inlet)
        EXPECT_TRUE(status.isInletConnected(inlet));
    // The outputs are left alone.
    EXPECT_FALSE(status.isOutletConnected(0));
}

TEST(InletsOutletsConnectionsStatusSizes, NewOutputCountReconnectsAllOutputs)
{
    InletsOutletsConnectionsStatus status(0, 2);
    const short counts[] = {0, 0};
    status.setConnections(counts);
    status.setNumOutletsStatus(2);
    EXPECT_FALSE(status.hasConnectedOutlet());
    status.setNumOutletsStatus(1);
    EXPECT_TRUE(status.isOutletConnected(0));
    EXPECT_FALSE(status.isOutletConnected(1));
}

} // namespace
} // namespace vlk
