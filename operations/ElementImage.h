#pragma once

#include "ImageSearch.h"

#include <QVariant>

#include <optional>
#include <vector>

/// How candidates of one form see other values: each value has an image, a number of two bytes, and one
/// whose image is not sought by a candidate cannot be equal to it by elementsEqual(), the candidate being
/// the left operand. What an image is made of is what Qt compares: the value, converted to the kind of the
/// candidate.
///
/// The form is the candidate's kind and, for a list, the kinds of its elements. Images are made for values
/// of these kinds: invalid, `bool`, integers of 32 and 64 bits, `double`, text, date, time, date and time,
/// and lists.
class CandidateForm
{
public:
    /// The kind of \a value, a number of QMetaType; -1 for one that has no images.
    static int kindOf(const QVariant &value);

    /// The form of \a candidate, which has to have images.
    explicit CandidateForm(const QVariant &candidate);

    /// Whether \a candidate, which is of \a kind, has this form.
    bool fits(int kind, const QVariant &candidate) const
    {
        return kind == m_kind && (kind != QMetaType::QVariantList || fitsList(candidate));
    }

    /// The images of the values that may be equal to \a candidate, which has to fit. None when they are too
    /// many: then any value may be equal.
    std::optional<SoughtImage> sought(const QVariant &candidate) const;

    /// The image of \a value. None when any candidate may be equal to it.
    std::optional<quint16> imageOf(const QVariant &value) const;

private:
    bool fitsList(const QVariant &candidate) const;

    // Where in a list the element of m_kinds[i] stands.
    int placeOf(std::size_t i) const;

    int m_kind;
    int m_size = 0; // of a list, ...
    std::vector<int> m_kinds; // ... and the kinds of those of its elements that are looked at
};
