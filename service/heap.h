#ifndef HEAP_H
#define HEAP_H

/// What the process keeps of memory that it no longer uses; only glibc can be told.
namespace heap
{

/**
 * Gives large blocks back as soon as they are free. To be called before the first of them.
 *
 * Else the allocator takes each large block for one of many to come: after one message of 31 MB that much, and copies of it, stayed.
 */
void returnLargeBlocks();
/// Gives back what lies free between small blocks.
void trim();

} // namespace heap

#endif
