// Argument lists and names. The only file whose macros write code; each minted function is one call.
//
// A family writes the argument list of a shape once, as a macro LIST(as, F, T, ...):
//     as   KESL_decl   the list of a declaration
//          KESL_take   the same arguments, taken into the objects of operand.h
//     F    S S2 L LS2 P   the kernel form; an exported function has the list of S2, LS2 or P
//     T    32f 64f
//     ...  what differs between the shapes that share the list: their operand kinds
#pragma once
#include "frame/operand.h"
#include "keslmx.h"

// clang-format off

#define KESL_T_32f float
#define KESL_T_64f double

// ---- The argument groups: what a kind of operand takes, in each kernel form, in order.
#define KESL_m_S(as, T, x)     as##_base(T, x),                  as##_stride1(x)
#define KESL_m_S2(as, T, x)    as##_base(T, x),                  as##_stride1(x), as##_stride2(x)
#define KESL_m_L(as, T, x)     KESL_m_S(as, T, x)                   // a single operand keeps its strides
#define KESL_m_LS2(as, T, x)   KESL_m_S2(as, T, x)
#define KESL_m_P(as, T, x)     as##_list(T, x), as##_shift(x)
#define KESL_ma_S(as, T, x)    as##_base(T, x), as##_stride0(x), as##_stride1(x)
#define KESL_ma_S2(as, T, x)   as##_base(T, x), as##_stride0(x), as##_stride1(x), as##_stride2(x)
#define KESL_ma_L(as, T, x)    as##_list(T, x), as##_shift(x),   as##_stride1(x)
#define KESL_ma_LS2(as, T, x)  as##_list(T, x), as##_shift(x),   as##_stride1(x), as##_stride2(x)
#define KESL_ma_P(as, T, x)    as##_list(T, x), as##_shift(x),   as##_stride0(x)
#define KESL_v_S(as, T, x)     as##_base(T, x)
#define KESL_v_S2(as, T, x)    as##_base(T, x),                                   as##_stride2(x)
#define KESL_v_L(as, T, x)     KESL_v_S(as, T, x)
#define KESL_v_LS2(as, T, x)   KESL_v_S2(as, T, x)
#define KESL_v_P(as, T, x)     as##_list(T, x), as##_shift(x)
#define KESL_va_S(as, T, x)    as##_base(T, x), as##_stride0(x)
#define KESL_va_S2(as, T, x)   as##_base(T, x), as##_stride0(x),                  as##_stride2(x)
#define KESL_va_L(as, T, x)    as##_list(T, x), as##_shift(x)
#define KESL_va_LS2(as, T, x)  as##_list(T, x), as##_shift(x),                    as##_stride2(x)
#define KESL_va_P(as, T, x)    as##_list(T, x), as##_shift(x),   as##_stride0(x)
#define KESL_ca_S(as, T, x)    as##_base(T, x), as##_stride0(x)
#define KESL_ca_S2(as, T, x)   KESL_ca_S(as, T, x)                  // constants have no stride2
#define KESL_ca_L(as, T, x)    as##_list(T, x), as##_shift(x)
#define KESL_ca_LS2(as, T, x)  KESL_ca_L(as, T, x)
#define KESL_ca_P(as, T, x)    KESL_ca_S(as, T, x)                  // constants stay a base pointer in P
#define KESL_group_m  m
#define KESL_group_ma ma
#define KESL_group_t  m                                             // a transposed operand has the arguments of a matrix
#define KESL_group_ta ma
#define KESL_group_v  v
#define KESL_group_va va
#define KESL_group_ca ca
#define KESL_group(as, group, F, T, x)   KESL_group_(as, group, F, T, x)
#define KESL_group_(as, group, F, T, x)  KESL_##group##_##F(as, T, x)

//                                   declared as                    taken as
#define KESL_decl_base(T, x)         T *x
#define KESL_take_base(T, x)                                        .p = x
#define KESL_decl_list(T, x)         T *const *x
#define KESL_take_list(T, x)                                        .p = x
#define KESL_decl_shift(x)           int x##RoiShift
#define KESL_take_shift(x)                                          .shift = x##RoiShift
#define KESL_decl_stride0(x)         int x##Stride0
#define KESL_take_stride0(x)                                        .stride0 = x##Stride0
#define KESL_decl_stride1(x)         int x##Stride1
#define KESL_take_stride1(x)                                        .stride1 = x##Stride1
#define KESL_decl_stride2(x)         int x##Stride2
#define KESL_take_stride2(x)                                        .stride2 = x##Stride2

// The same for a matrix of vectors: its pointer has a longer name than its strides.
#define KESL_declVectors_base(T, x)  T *x##Vectors
#define KESL_takeVectors_base(T, x)                                 .p = x##Vectors
#define KESL_declVectors_list(T, x)  T *const *x##Vectors
#define KESL_takeVectors_list(T, x)                                 .p = x##Vectors
#define KESL_declVectors_shift       KESL_decl_shift
#define KESL_takeVectors_shift       KESL_take_shift
#define KESL_declVectors_stride0     KESL_decl_stride0
#define KESL_takeVectors_stride0     KESL_take_stride0
#define KESL_declVectors_stride1     KESL_decl_stride1
#define KESL_takeVectors_stride1     KESL_take_stride1
#define KESL_declVectors_stride2     KESL_decl_stride2
#define KESL_takeVectors_stride2     KESL_take_stride2
// And for an input whose strides and shift have no name in front.
#define KESL_declBare_base(T, x)     T *x
#define KESL_takeBare_base(T, x)                                    .p = x
#define KESL_declBare_list(T, x)     T *const *x
#define KESL_takeBare_list(T, x)                                    .p = x
#define KESL_declBare_shift(x)       int roiShift
#define KESL_takeBare_shift(x)                                      .shift = roiShift
#define KESL_declBare_stride0(x)     int stride0
#define KESL_takeBare_stride0(x)                                    .stride0 = stride0
#define KESL_declBare_stride1(x)     int stride1
#define KESL_takeBare_stride1(x)                                    .stride1 = stride1
#define KESL_declBare_stride2(x)     int stride2
#define KESL_takeBare_stride2(x)                                    .stride2 = stride2

// ---- What a LIST is made of: in and out for operands of a kind, and the rest by name.
#define KESL_decl_in(kind, x, F, T)  KESL_group(KESL_decl, KESL_group_##kind, F, const KESL_T_##T, x)
#define KESL_take_in(kind, x, F, T)  kesl::kind<const KESL_T_##T, kesl::F>{KESL_group(KESL_take, KESL_group_##kind, F, , x)}
#define KESL_decl_out(kind, x, F, T) KESL_group(KESL_decl, KESL_group_##kind, F, KESL_T_##T, x)
#define KESL_take_out(kind, x, F, T) kesl::kind<KESL_T_##T, kesl::F>{KESL_group(KESL_take, KESL_group_##kind, F, , x)}
#define KESL_decl_vectors(kind, x, F, T) KESL_group(KESL_declVectors, KESL_group_##kind, F, KESL_T_##T, x)
#define KESL_take_vectors(kind, x, F, T) kesl::kind<KESL_T_##T, kesl::F>{KESL_group(KESL_takeVectors, KESL_group_##kind, F, , x)}
#define KESL_decl_bare(kind, x, F, T)    KESL_group(KESL_declBare, KESL_group_##kind, F, const KESL_T_##T, x)
#define KESL_take_bare(kind, x, F, T)    kesl::kind<const KESL_T_##T, kesl::F>{KESL_group(KESL_takeBare, KESL_group_##kind, F, , x)}
#define KESL_decl_value(x, T)        KESL_T_##T x
#define KESL_take_value(x, T)        kesl::c<KESL_T_##T>(x)
#define KESL_decl_packed(x, T)       KESL_T_##T *x
#define KESL_take_packed(x, T)       kesl::Packed<KESL_T_##T>(x)
#define KESL_decl_table(T, x, each)  T *x
#define KESL_take_table(T, x, each)  kesl::Table<T>(x, each)
#define KESL_decl_size(x)            int x
#define KESL_take_size(x)            kesl::Size(x)
#define KESL_decl_count(x)           int x
#define KESL_take_count(x)           kesl::Count(x)
#define KESL_decl_buffer(x, T)       KESL_T_##T *x
#define KESL_take_buffer(x, T)       kesl::Buffer<KESL_T_##T>(x)

// ---- The functions of a member. Its description is the struct op##_##shape, `layout` the end of its exported names
// and `form` of its kernels.
#define KESL_DECLARE(name, T, F, LIST, ...)  extern "C" KeslStatus name(LIST(KESL_decl, F, T, __VA_ARGS__));

#define KESL_DECLARE_KERNEL(op, shape, T, F, form, ...)  KESL_DECLARE(ownkesl##op##_##shape##_##T##form, T, F, __VA_ARGS__)
#define KESL_KERNEL(op, shape, T, F, form, LIST, ...)                                                               \
    extern "C" KeslStatus ownkesl##op##_##shape##_##T##form(LIST(KESL_decl, F, T, __VA_ARGS__))                       \
    { return kesl::runKernel<kesl::op##_##shape, KESL_T_##T, kesl::F>(LIST(KESL_take, F, T, __VA_ARGS__)); }

#define KESL_EXPORT(op, shape, T, F, layout, kernel, general, wrapper, LIST, ...)                                   \
    extern "C" [[gnu::visibility("default")]]                                                                       \
    KeslStatus kesl##op##_##shape##_##T##layout(LIST(KESL_decl, F, T, __VA_ARGS__))                                   \
    { return kesl::enter<kesl::op##_##shape, KESL_T_##T>(kernel, general, wrapper, LIST(KESL_take, F, T, __VA_ARGS__)); }

// A function that has neither kernels nor threads.
#define KESL_DIRECT(op, shape, T, F, layout, LIST, ...)                                                             \
    extern "C" [[gnu::visibility("default")]]                                                                       \
    KeslStatus kesl##op##_##shape##_##T##layout(LIST(KESL_decl, F, T, __VA_ARGS__))                                   \
    { return kesl::direct<kesl::op##_##shape, KESL_T_##T>(LIST(KESL_take, F, T, __VA_ARGS__)); }

#define KESL_WRAPPER(op, shape, T, F, layout, kernel, general, LIST, ...)                                           \
    extern "C" KeslStatus ownOMP_kesl##op##_##shape##_##T##layout(LIST(KESL_decl, F, T, __VA_ARGS__))                 \
    { return kesl::share<kesl::op##_##shape, KESL_T_##T>(kernel, general, LIST(KESL_take, F, T, __VA_ARGS__)); }

// The common code of a family above its unrolled orders, in functions of its own: op##_com<T, F>, and its body.
#define KESL_COMMON(op, shape, T, F, form, LIST, ...)                                                               \
    KESL_DECLARE(ownkesl##op##_##shape##_##T##form##_com, T, F, LIST, __VA_ARGS__)                                    \
    template <> inline constexpr auto* kesl::op##_com<KESL_T_##T, kesl::F> = ownkesl##op##_##shape##_##T##form##_com;
#define KESL_COMMON_BODY(op, shape, T, F, form, LIST, ...)                                                          \
    extern "C" KeslStatus ownkesl##op##_##shape##_##T##form##_com(LIST(KESL_decl, F, T, __VA_ARGS__))                 \
    { return kesl::op##_##shape::common<KESL_T_##T>(LIST(KESL_take, F, T, __VA_ARGS__)); }

// ---- The layouts, a row each: list and end of the name of the exported function; of its kernel for contiguous rows; of that
// for any stride2. ONE kernel takes both in P, and in some families everywhere.
#define KESL_S(M, ...)      M(S2,    ,   S,   ,   S2,  _S2,  __VA_ARGS__)
#define KESL_L(M, ...)      M(LS2, _L,   L,   _L, LS2, _LS2, __VA_ARGS__)
#define KESL_P(M, ...)      M(P,   _P,   P,   _P, ONE, _P,   __VA_ARGS__)
#define KESL_ONE_S(M, ...)  M(S2,    ,   S2,  ,   ONE, ,     __VA_ARGS__)
#define KESL_ONE_L(M, ...)  M(LS2, _L,   LS2, _L, ONE, _L,   __VA_ARGS__)

#define KESL_SP(M, ...)      KESL_S(M, __VA_ARGS__)      KESL_P(M, __VA_ARGS__)
#define KESL_SLP(M, ...)     KESL_S(M, __VA_ARGS__)      KESL_L(M, __VA_ARGS__)      KESL_P(M, __VA_ARGS__)
#define KESL_ONE_SP(M, ...)  KESL_ONE_S(M, __VA_ARGS__)  KESL_P(M, __VA_ARGS__)
#define KESL_ONE_SLP(M, ...) KESL_ONE_S(M, __VA_ARGS__)  KESL_ONE_L(M, __VA_ARGS__)  KESL_P(M, __VA_ARGS__)

// M for the second kernel of a row, if it has one.
#define KESL_SECOND_S2(M, op, shape, T, end, ...)   M(op, shape, T, S2, end, __VA_ARGS__)
#define KESL_SECOND_LS2(M, op, shape, T, end, ...)  M(op, shape, T, LS2, end, __VA_ARGS__)
#define KESL_SECOND_ONE(...)

// What is made of a row: an exported function without threads, and its kernels ...
#define KESL_SERIAL_ROW(F, layout, S, kernel, S2, general, op, shape, T, ...)                                       \
    KESL_KERNEL(op, shape, T, S, kernel, __VA_ARGS__)                                                               \
    KESL_SECOND_##S2(KESL_KERNEL, op, shape, T, general, __VA_ARGS__)                                               \
    KESL_EXPORT(op, shape, T, F, layout, ownkesl##op##_##shape##_##T##kernel, ownkesl##op##_##shape##_##T##general, \
                kesl::serial, __VA_ARGS__)
// ... one with threads, and its kernels ...
#define KESL_ARRAY_ROW(F, layout, S, kernel, S2, general, op, shape, T, ...)                                        \
    KESL_DECLARE(ownOMP_kesl##op##_##shape##_##T##layout, T, F, __VA_ARGS__)                                        \
    KESL_KERNEL(op, shape, T, S, kernel, __VA_ARGS__)                                                               \
    KESL_SECOND_##S2(KESL_KERNEL, op, shape, T, general, __VA_ARGS__)                                               \
    KESL_EXPORT(op, shape, T, F, layout, ownkesl##op##_##shape##_##T##kernel, ownkesl##op##_##shape##_##T##general, \
                ownOMP_kesl##op##_##shape##_##T##layout, __VA_ARGS__)
// ... and, in the threaded module, its wrapper.
#define KESL_THREADED_ROW(F, layout, S, kernel, S2, general, op, shape, T, ...)                                     \
    KESL_DECLARE_KERNEL(op, shape, T, S, kernel, __VA_ARGS__)                                                       \
    KESL_SECOND_##S2(KESL_DECLARE_KERNEL, op, shape, T, general, __VA_ARGS__)                                       \
    KESL_WRAPPER(op, shape, T, F, layout, ownkesl##op##_##shape##_##T##kernel,                                      \
                 ownkesl##op##_##shape##_##T##general, __VA_ARGS__)

// ---- What modules say, with op, shape, LIST and its operand kinds: single objects; arrays without threads; arrays, and in
// their threaded modules their wrappers. _T, _S, _L and _P take the element type too, behind the shape, for members whose
// types or layouts differ.
#define KESL_TYPES(rows, M, op, shape, ...) rows(M, op, shape, 32f, __VA_ARGS__)  rows(M, op, shape, 64f, __VA_ARGS__)

#define KESL_SINGLE(...)        KESL_TYPES(KESL_SP, KESL_SERIAL_ROW, __VA_ARGS__)
#define KESL_SERIAL(...)        KESL_TYPES(KESL_SLP, KESL_SERIAL_ROW, __VA_ARGS__)
#define KESL_SERIAL_P(...)      KESL_P(KESL_SERIAL_ROW, __VA_ARGS__)
#define KESL_ARRAY(...)         KESL_TYPES(KESL_SLP, KESL_ARRAY_ROW, __VA_ARGS__)
#define KESL_ARRAY_T(...)       KESL_SLP(KESL_ARRAY_ROW, __VA_ARGS__)
#define KESL_ARRAY_S(...)       KESL_S(KESL_ARRAY_ROW, __VA_ARGS__)
#define KESL_ARRAY_L(...)       KESL_L(KESL_ARRAY_ROW, __VA_ARGS__)
#define KESL_THREADED(...)      KESL_TYPES(KESL_SLP, KESL_THREADED_ROW, __VA_ARGS__)
#define KESL_THREADED_T(...)    KESL_SLP(KESL_THREADED_ROW, __VA_ARGS__)
#define KESL_THREADED_S(...)    KESL_S(KESL_THREADED_ROW, __VA_ARGS__)
#define KESL_THREADED_L(...)    KESL_L(KESL_THREADED_ROW, __VA_ARGS__)
#define KESL_ONE_SINGLE(...)    KESL_TYPES(KESL_ONE_SP, KESL_SERIAL_ROW, __VA_ARGS__)
#define KESL_ONE_ARRAY(...)     KESL_TYPES(KESL_ONE_SLP, KESL_ARRAY_ROW, __VA_ARGS__)
#define KESL_ONE_THREADED(...)  KESL_TYPES(KESL_ONE_SLP, KESL_THREADED_ROW, __VA_ARGS__)

// clang-format on
