// How a length of small factors is transformed: the plan, its tables and the memory that they and a transform need.
#pragma once

#include "transforms/dft_spec.hpp"

namespace zvps {

// The fastest plan for a length of two factors or more; returns its time in nanoseconds, about.
template <class T>
double planDft(size_t length, DftPlan<T>& plan);

// Numbers of type T in the tables, and in the memory that a transform works in.
template <class T>
size_t dftTableSize(const DftPlan<T>& plan);
template <class T>
size_t dftWorkSize(const DftPlan<T>& plan);

// Fills the tables, which start at an address aligned to 32 bytes.
template <class T>
void buildDftTables(DftPlan<T>& plan, T* tables);

// exp(-2 pi i k / n) for the k = first, first + step, ... , interleaved.
template <class T>
void storeRoots(uint64_t first, uint64_t step, uint64_t n, T* dst, size_t count);

// The roots of a transform of an odd number of points by its definition, for `tile` results k at a time: for each i
// from 1 to points / 2 the cosines of 2 pi i k / points, then the sines. The last tile overlaps the one before. The
// results of a tile are in their order or in that of a block.
template <class T>
size_t definitionTableSize(size_t points, size_t tile);
template <class T>
void buildDefinitionTable(size_t points, size_t tile, bool isInBlocks, T* table);

} // namespace zvps
