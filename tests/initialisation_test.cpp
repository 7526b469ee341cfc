// Copies, fills and moves: the values, and moves between overlapping vectors.
#include "framework/call.hpp"

#include <gtest/gtest.h>

namespace zvps::test {
namespace {

TEST(Initialisation, Values) {
    Stage stage(4096 * 16);
    for (const Function& f : functions()) {
        if (f.family != "initialisation") continue;
        Random random(f.name);
        const Operands operands = randomOperands(f, 4096, random);
        std::vector<Bytes> wanted = operands.vectors;
        const size_t output = f.indexOf(Role::destination);
        const size_t bytes = f.arguments[output].type->bytes();
        if (f.hasRole(Role::source)) {
            wanted[output] = operands.vectors[f.indexOf(Role::source)];
        } else if (f.hasRole(Role::constant)) {
            const unsigned char* const value = operands.values[f.indexOf(Role::constant)].bytes.data();
            for (size_t i = 0; i < operands.count; ++i)
                std::memcpy(&wanted[output][i * bytes], value, bytes);
        } else {
            wanted[output].assign(wanted[output].size(), 0);
        }
        for (const Level level : levels()) {
            useLevel(level);
            EXPECT_EQ(stage.call(f, operands, 0, operands.count, {}), zvpStsOk);
            EXPECT_EQ(differences(f, stage, wanted, 0, operands.count), "") << f.name << " by " << levelName(level);
        }
    }
    useLevel(levels().back());
}

TEST(Initialisation, OverlappingMoves) {
    for (const Function& f : functions()) {
        if (f.base() != "Move") continue;
        Random random(f.name);
        const ElementType& type = *f.arguments[0].type;
        for (int round = 0; round < 300; ++round) {
            Bytes block(700 * type.bytes());
            for (unsigned char& byte : block)
                byte = static_cast<unsigned char>(random());
            const size_t count = 1 + random.below(500), from = random.below(200), to = random.below(200);
            Bytes wanted = block;
            std::memcpy(&wanted[to * type.bytes()], &block[from * type.bytes()], count * type.bytes());
            Values values;
            values[0].set(&block[from * type.bytes()]);
            values[1].set(&block[to * type.bytes()]);
            values[2].set(static_cast<int>(count));
            EXPECT_EQ(f.call(f.address, values), zvpStsOk);
            ASSERT_EQ(block, wanted) << f.name << ": " << count << " elements from " << from << " to " << to;
        }
    }
}

} // namespace
} // namespace zvps::test
