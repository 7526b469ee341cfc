#include "bench.hpp"
#include "peers.hpp"
#include "volk.hpp"

#include <numeric>

namespace bench {

Lengths shortLengths() {
    Lengths lengths(64);
    std::iota(lengths.begin(), lengths.end(), 1);
    return lengths;
}

namespace {

// What this machine's memory gives, the measure of the large rows, and its core: of LENGTH multiply-adds.
void registerMachine() {
    Row<Zvp32f>("machine", 1, {kLarge}).with("fma_32f", BENCH_CALL(v.dst[0] = plain::multiplyAdds(v.a, v.n)));
    Row<Zvp64f>("machine", 1, {kLarge}).with("fma_64f", BENCH_CALL(v.dst[0] = plain::multiplyAdds(v.a, v.n)));
    Row<Zvp32f>("machine", 2, {kLarge}).with("copy", BENCH_CALL(plain::copy(v.a, v.dst, v.n)));
    Row<Zvp32f>("machine", 3, {kLarge}).with("triad", BENCH_CALL(plain::triad(v.a, v.b, v.val, v.dst, v.n)));
}

const char* vectorBytes() {
    if (__builtin_cpu_supports("x86-64-v4")) return "64";
    return __builtin_cpu_supports("x86-64-v3") ? "32" : "16";
}

} // namespace
} // namespace bench

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    benchmark::AddCustomContext("vector_bytes", bench::vectorBytes());
    benchmark::AddCustomContext("volk_machine", volk_get_machine());
    bench::chooseVolkImplementations();
    bench::registerMachine();
    bench::registerArithmetic();
    bench::registerConversion();
    bench::registerCorrelation();
    bench::registerDct();
    bench::registerDft();
    bench::registerFft();
    bench::registerFir();
    bench::registerMultirateFir();
    bench::registerGenerators();
    bench::registerIir();
    bench::registerInitialisation();
    bench::registerStatistics();
    bench::registerTelephony();
    bench::registerWindows();
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
}
