#pragma once

#include "z_dsp.h"

#include <atomic>
#include <memory>
#include <mutex>
#include <vector>

namespace vlk::host {

// The signal objects, the DSP chain compiled from their dsp64 methods, and the audio settings. The chain is
// compiled and changed on the main thread and run by the audio thread, one vector at a time, under
// chainLock; z_disabled is written under it as well.
class DspGraph
{
public:
    static DspGraph& instance();

    void setSampleRate(double rate) { sampleRate = rate; }
    double getSampleRate() const { return sampleRate; }
    void setVectorSize(int size) { vectorSize = size; }
    int getVectorSize() const { return vectorSize; }
    bool isRunning() const { return running.load(std::memory_order_acquire); }

    // From z_dsp_setup and from the free path.
    void add(t_pxobject* x);
    void forget(t_object* x);
    bool isInChain(t_object* x);

    // The host's switch behind every signal object's z_disabled.
    void setDisabled(bool disabled);
    // Which signal outlets of x (left to right) count as connected at the next compile; all by default.
    void setConnectedOutlets(t_object* x, std::vector<bool> connected);

    // Main thread: dsp on (compiles the chain) and off.
    void start();
    void stop();
    // Main thread, before rendering: compiles again if objects came or went while running.
    void prepare();
    // The signal outlets of all signal objects, in creation order and left to right.
    int getNumOutputChannels();
    // Audio thread: one vector; the outputs interleaved into frames when it is not null.
    void renderVector(float* frames);

    // From dsp_add64 while a chain compiles.
    void addPerform(t_object* x, t_perfroutine64 perform, long flags, void* userparam);

private:
    struct Buffers
    {
        t_object* object;
        std::vector<std::vector<double>> storage;
        std::vector<double*> ins;
        std::vector<double*> outs;
    };

    struct Perform
    {
        t_pxobject* object;
        t_perfroutine64 routine;
        long flags;
        void* userparam;
        Buffers* buffers;
    };

    struct Member
    {
        t_pxobject* object;
        std::vector<bool> connected;
        bool allConnected = true;
    };

    void compile();
    void compileObject(Member& member, t_object* chainObject);
    void computeLayout();
    Buffers* buffersOf(t_object* x);

    double sampleRate = 44100;
    int vectorSize = 64;
    std::atomic<bool> running{false};
    bool dirty = false;
    bool disabled = false;
    // Guards chain, buffers, layout and the objects' z_disabled. Recursive: dsp64 methods and perform
    // routines, which run under it, may ask sys_getdspobjdspstate.
    std::recursive_mutex chainLock;
    std::vector<Member> members;
    std::vector<Perform> chain;
    std::vector<std::unique_ptr<Buffers>> buffers;
    // One entry per output channel: the vector to record, or null for silence.
    std::vector<const double*> layout;
    std::vector<Perform>* compiling = nullptr;
    // The target of dsp_add64, made once and kept: perform routines receive it too.
    t_object* chainObject = nullptr;
};

} // namespace vlk::host
