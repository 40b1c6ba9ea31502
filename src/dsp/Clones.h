#pragma once

// PARLOWEN_CLONES marks a hot function that is compiled twice, for AVX2 and for any processor; the loader
// picks one. AVX2 without fused multiply-add gives the same bits as the plain code. Sanitizers cannot
// instrument the loader's choice, so they build the plain one alone.
#if defined(__x86_64__) && defined(__linux__) && !defined(__SANITIZE_ADDRESS__) && \
    !defined(__SANITIZE_THREAD__) && (defined(__GNUC__) && !defined(__clang__))
#define PARLOWEN_CLONES __attribute__((target_clones("avx2", "default")))
#else
#define PARLOWEN_CLONES
#endif

// The parts of such a function, which must be compiled with it.
#if defined(__GNUC__)
#define PARLOWEN_INLINE inline __attribute__((always_inline))
#else
#define PARLOWEN_INLINE inline
#endif
