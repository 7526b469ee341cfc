#include "framework/function.hpp"

#include <algorithm>

// Weak, so that a family can be tested while some of its functions are still to be written; that none is missing in
// the end, the check of the exports sees to.
#define ZVPS_FUNCTION(FAMILY, NAME, PARAMETERS) extern "C" decltype(NAME) NAME __attribute__((weak));
#include "functions.inc"
#undef ZVPS_FUNCTION

namespace zvps::test {

const std::vector<Function>& functions() {
    static const std::vector<Function> built = [] {
        std::vector<Function> all = {
#define ZVPS_FUNCTION(FAMILY, NAME, PARAMETERS) describe(#FAMILY, #NAME, PARAMETERS, &NAME),
#include "functions.inc"
#undef ZVPS_FUNCTION
        };
        const auto isMissing = [](const Function& f) { return f.address == nullptr; };
        all.erase(std::remove_if(all.begin(), all.end(), isMissing), all.end());
        for (Function& f : all) {
            for (Argument& argument : f.arguments) {
                if (f.family == "statistics" && argument.role == Role::destination) argument.role = Role::result;
                if (f.name.find("24") != std::string::npos && argument.type == &kElement8u) argument.type = &kElement24;
            }
        }
        return all;
    }();
    return built;
}

std::string Function::base() const {
    // Capitals begin the words of a base name; types begin with a digit.
    const std::string rest = name.substr(std::strlen("zvps"));
    size_t end = rest.find('_');
    while (end != std::string::npos && end + 1 < rest.size() && rest[end + 1] >= 'A')
        end = rest.find('_', end + 1);
    return rest.substr(0, end);
}

size_t Function::indexOf(Role role) const {
    size_t i = 0;
    while (i < arguments.size() && arguments[i].role != role)
        ++i;
    return i;
}

bool Function::isElementwise() const {
    static constexpr std::string_view kFamilies[] = {"arithmetic", "companding", "convert", "initialisation",
                                                     "threshold"};
    const bool isFamily = std::find(std::begin(kFamilies), std::end(kFamilies), family) != std::end(kFamilies);
    return (isFamily || family == "statistics") && call != nullptr && hasRole(Role::length) && !hasRole(Role::other) &&
           (hasRole(Role::destination) || hasRole(Role::inOut));
}

bool Function::isReduction() const {
    return call != nullptr && hasRole(Role::length) && !hasRole(Role::other) && hasRole(Role::result);
}

bool Function::isUnchecked() const {
    return family == "statistics" && hasRole(Role::inOut);
}

bool Function::isOptional(const Argument& argument) const {
    return argument.name == "pIndx" && argument.role == Role::result;
}

int Function::leastLength() const {
    return base() == "StdDev" || base() == "MeanStdDev" ? 2 : 1;
}

bool Function::rejectsZeroConstant() const {
    return base() == "DivC" && name != "zvpsDivC_64s_ISfs";
}

bool Function::rejectsNegativeLevel() const {
    static constexpr std::string_view kMagnitudes[] = {"Threshold_LTAbs", "Threshold_GTAbs", "Threshold_LTInv"};
    return family == "threshold" &&
           (arguments[0].type->parts == 2 ||
            std::find(std::begin(kMagnitudes), std::end(kMagnitudes), base()) != std::end(kMagnitudes));
}

bool Function::rejectsRoundMode(int mode) const {
    if (family == "arithmetic") return mode < zvpRndZero || mode > zvpRndFinancial;
    return !hasRole(Role::scaleFactor) && mode == zvpRndFinancial; // to half precision
}

bool Function::acceptsNegativeLength() const {
    return name == "zvpsDivC_64s_ISfs";
}

Argument describeArgument(Role byType, const ElementType* type, std::string_view name) {
    Role role = byType;
    if (role == Role::destination && name.find("SrcDst") != std::string_view::npos) role = Role::inOut;
    if (role == Role::constant && name == "len") role = Role::length;
    if (role == Role::constant && name == "scaleFactor") role = Role::scaleFactor;
    if (role == Role::constant && name == "rndMode") role = Role::roundMode;
    return {role, type, std::string(name)};
}

std::vector<std::string> parameterNames(std::string_view parameters) {
    std::vector<std::string> names;
    for (size_t begin = 0; begin < parameters.size();) {
        const size_t end = std::min(parameters.find(',', begin), parameters.size());
        const std::string_view one = parameters.substr(begin, end - begin);
        names.emplace_back(one.substr(one.find_last_of(" *") + 1));
        begin = end + 1;
    }
    return names;
}

} // namespace zvps::test
