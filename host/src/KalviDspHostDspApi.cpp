// Signal objects and the audio settings as the SDK names them.
#include "KalviDspHostDspGraph.h"

#include "z_dsp.h"

using vlk::host::DspGraph;

void z_dsp_setup(t_pxobject* x, long nsignals)
{
    if (x == nullptr)
        return;
    x->z_in = 0;
    x->z_proxy = nullptr;
    x->z_count = static_cast<short>(nsignals);
    x->z_misc = 0;
    DspGraph::instance().add(x);
}

void z_dsp_free(t_pxobject* x)
{
    if (x != nullptr)
        DspGraph::instance().forget(&x->z_ob);
}

void dsp_resize(t_pxobject* x, long nsignals)
{
    if (x != nullptr)
        x->z_count = static_cast<short>(nsignals);
}

void dsp_add64(t_object* chain, t_object* x, t_perfroutine64 f, long flags, void* userparam)
{
    object_method(chain, gensym("dsp_add64"), x, f, flags, userparam);
}

float sys_getsr(void)
{
    return static_cast<float>(DspGraph::instance().getSampleRate());
}

int sys_getblksize(void)
{
    return DspGraph::instance().getVectorSize();
}

int sys_getmaxblksize(void)
{
    return DspGraph::instance().getVectorSize();
}

int sys_getdspstate(void)
{
    return DspGraph::instance().isRunning() ? 1 : 0;
}

int sys_getdspobjdspstate(t_object* o)
{
    return DspGraph::instance().isInChain(o) ? 1 : 0;
}
