#ifndef ALLOCATIONS_H
#define ALLOCATIONS_H

/**
 * Number of blocks that this thread has asked the heap for.
 *
 * Programs that are built with allocations.cpp only: it puts itself in front of the C library's malloc(), or listens to the
 * sanitizer's where a sanitizer brings its own.
 */
int allocationCount();

#endif
