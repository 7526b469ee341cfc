#include "telephony/companding.hpp"

#include "telephony/companding.table.hpp"

namespace zvps::ZVPS_LEVEL {

namespace {

template <class Op, class S, class D>
void compand(const S* src, D* dst, size_t n) {
    Op op;
    map(op, dst, n, Vector<S>{src});
}

} // namespace

extern const CompandingKernels compandingKernels;
const CompandingKernels compandingKernels = {
#define ZVPS_KERNEL(slot, op, source, destination) compand<op, source, destination>,
    ZVPS_COMPANDINGS(ZVPS_KERNEL)
#undef ZVPS_KERNEL
};

} // namespace zvps::ZVPS_LEVEL
