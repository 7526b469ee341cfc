// How a length of small factors is transformed: the plan, its tables and the memory that they and a transform need.
#pragma once

#include "transforms/dft_spec.hpp"

namespace zvps {

template <class T>
void planDft(size_t length, DftPlan<T>& plan);

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

// The roots of a transform of an odd number of points by its definition, for `tile` results at a time: cosines of 2 pi
// i k / points for k = first, ..., first + tile - 1, and then the sines, for each i from 1 to points / 2; 0 beyond the
// last k = points / 2. Tables of the order that numberAt() gives.
template <class T>
size_t definitionTableSize(size_t points, size_t tile);
template <class T>
void buildDefinitionTable(size_t points, size_t tile, T* table);

} // namespace zvps
