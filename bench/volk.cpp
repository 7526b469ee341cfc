#include "volk.hpp"

#include "bench.hpp"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace bench {
namespace {

// Best of many short runs: other programs can only slow a run down.
template <class Call>
double fastestRun(Call call) {
    using Clock = std::chrono::steady_clock;
    double fastest = std::numeric_limits<double>::infinity();
    for (int run = 0; run != 50; ++run) {
        const auto start = Clock::now();
        for (int i = 0; i != 20; ++i)
            call();
        fastest = std::min(fastest, std::chrono::duration<double>(Clock::now() - start).count());
    }
    return fastest;
}

// The line of VOLK's configuration for a function: the best implementation for aligned vectors, and for any.
template <class Call>
std::string choice(const char* function, const volk_func_desc_t& implementations, Call call) {
    double bestAligned = std::numeric_limits<double>::infinity();
    double bestAny = bestAligned;
    const char* aligned = "generic";
    const char* any = "generic";
    for (size_t i = 0; i != implementations.n_impls; ++i) {
        const char* name = implementations.impl_names[i];
        const double time = fastestRun([&] { call(name); });
        if (time < bestAligned) {
            bestAligned = time;
            aligned = name;
        }
        if (!implementations.impl_alignment[i] && time < bestAny) {
            bestAny = time;
            any = name;
        }
    }
    return std::string(function) + ' ' + aligned + ' ' + any + '\n';
}

} // namespace

void chooseVolkImplementations() {
    constexpr int kLength = 1024;
    char directory[] = "/tmp/zvps_bench.XXXXXX";
    if (mkdtemp(directory) == nullptr) return;
    const std::filesystem::path root(directory);
    std::filesystem::create_directory(root / "volk");
    {
        std::ofstream configuration(root / "volk" / "volk_config");
#define CHOOSE(function, TYPE, second)                                                                                 \
    {                                                                                                                  \
        const Vectors<TYPE> v = Buffers<TYPE>::vectors(kLength, 0, 0);                                                 \
        configuration << choice(#function, function##_get_func_desc(), [&](const char* implementation) {               \
            function##_manual(raw(v.dst), raw(v.a), raw(second), count(v), implementation);                            \
        });                                                                                                            \
    }
        CHOOSE(volk_32f_x2_add_32f, Zvp32f, v.b)
        CHOOSE(volk_32f_x2_subtract_32f, Zvp32f, v.b)
        CHOOSE(volk_32f_x2_multiply_32f, Zvp32f, v.b)
        CHOOSE(volk_32f_x2_divide_32f, Zvp32f, v.b)
        CHOOSE(volk_64f_x2_add_64f, Zvp64f, v.b)
        CHOOSE(volk_64f_x2_multiply_64f, Zvp64f, v.b)
        CHOOSE(volk_32fc_x2_add_32fc, Zvp32fc, v.b)
        CHOOSE(volk_32fc_x2_multiply_32fc, Zvp32fc, v.b)
        CHOOSE(volk_32fc_x2_divide_32fc, Zvp32fc, v.b)
        CHOOSE(volk_32f_s32f_add_32f, Zvp32f, v.val)
        CHOOSE(volk_32f_s32f_multiply_32f, Zvp32f, v.val)
        CHOOSE(volk_32fc_s32fc_multiply_32fc, Zvp32fc, v.val)
        CHOOSE(volk_32f_x2_dot_prod_32f, Zvp32f, v.b)
        CHOOSE(volk_32fc_x2_dot_prod_32fc, Zvp32fc, v.b)
        CHOOSE(volk_32f_x2_min_32f, Zvp32f, v.b)
        CHOOSE(volk_64f_x2_min_64f, Zvp64f, v.b)
        const Vectors<Zvp32f> v = Buffers<Zvp32f>::vectors(kLength, 0, 0);
        configuration << choice("volk_32f_index_max_32u", volk_32f_index_max_32u_get_func_desc(),
                                [&](const char* implementation) {
                                    uint32_t place;
                                    volk_32f_index_max_32u_manual(&place, v.a, count(v), implementation);
                                });
    }
    setenv("VOLK_CONFIGPATH", directory, 1);
    // VOLK reads its configuration at the first call.
    const Vectors<Zvp32f> v = Buffers<Zvp32f>::vectors(kLength, 0, 0);
    volk_32f_x2_add_32f(v.dst, v.a, v.b, count(v));
    std::filesystem::remove_all(root);
}

} // namespace bench
