#pragma once

#include <QtAlgorithms>
#include <QtGlobal>

#include <algorithm>

#if defined(__SSE2__) || defined(_M_X64)
#include <emmintrin.h>
#define LISTOPERATIONS_HAS_SSE2
#endif

/// What is looked for among images: either of two, which may be the same.
struct SoughtImage
{
    quint16 first;
    quint16 second;
};

/// The first image between \a first and \a last that is one of \a sought; \a last when there is none.
inline const quint16 *findImagePlainly(const quint16 *first, const quint16 *last, SoughtImage sought)
{
    return std::find_if(first, last,
                        [sought](quint16 image) { return image == sought.first || image == sought.second; });
}

#ifdef LISTOPERATIONS_HAS_SSE2

/// Goes on from \a first to an image that \a matches, or to the last few before \a last.
///
/// \a matches gives for eight images a vector of eight answers. One test for eight such vectors keeps the
/// processor busy with comparing. Compilers do not make that of a plain loop, or only when told to take
/// pains.
template<typename Matches>
const quint16 *skipOtherImages(const quint16 *first, const quint16 *last, Matches matches)
{
    const auto either = [](__m128i left, __m128i right) { return _mm_or_si128(left, right); };
    const auto at = [&](int image) {
        return matches(_mm_loadu_si128(reinterpret_cast<const __m128i *>(first + image)));
    };
    for (; last - first >= 64; first += 64) {
        const __m128i found = either(either(either(at(0), at(8)), either(at(16), at(24))),
                                     either(either(at(32), at(40)), either(at(48), at(56))));
        if (_mm_movemask_epi8(found) != 0)
            break;
    }
    for (; last - first >= 8; first += 8) {
        const auto found = static_cast<quint32>(_mm_movemask_epi8(at(0)));
        if (found != 0)
            return first + qCountTrailingZeroBits(found) / sizeof(quint16);
    }
    return first;
}

/// Does what findImagePlainly() does, about ten times as fast.
inline const quint16 *findImage(const quint16 *first, const quint16 *last, SoughtImage sought)
{
    const __m128i one = _mm_set1_epi16(static_cast<short>(sought.first));
    const __m128i other = _mm_set1_epi16(static_cast<short>(sought.second));
    const auto isOne = [one](__m128i images) { return _mm_cmpeq_epi16(images, one); };
    const auto isEither = [one, other](__m128i images) {
        return _mm_or_si128(_mm_cmpeq_epi16(images, one), _mm_cmpeq_epi16(images, other));
    };
    const quint16 *const next = sought.first == sought.second ? skipOtherImages(first, last, isOne)
                                                              : skipOtherImages(first, last, isEither);
    return findImagePlainly(next, last, sought);
}

#else

inline const quint16 *findImage(const quint16 *first, const quint16 *last, SoughtImage sought)
{
    return findImagePlainly(first, last, sought);
}

#endif
