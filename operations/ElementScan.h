#pragma once

#include "ElementImage.h"
#include "ListFunctions.h"

#include <QVariant>

#include <vector>

/// A sequence of list elements that tells whether one of them equals a candidate, by elementsEqual().
///
/// It is a plain scan, first to last, made cheap: beside the elements stand their images, two bytes each,
/// and only elements with an image that the candidate looks for are put to elementsEqual() itself. The
/// images decide nothing but what need not be asked. A candidate without images is compared with every
/// element, and so is an element without an image, in its turn, with every candidate. No element is asked
/// about twice for one candidate.
class ElementScan
{
public:
    /// Starts without elements, with room for \a capacity of them.
    explicit ElementScan(int capacity = 0);

    /// Starts with \a elements, sharing their data.
    explicit ElementScan(const QVariantList &elements);

    /// Adds \a element at the end.
    void append(const QVariant &element);

    /// Whether \a candidate equals one of the elements. The candidate is the left operand.
    bool contains(const QVariant &candidate)
    {
        // Asking takes less time than an image where there are few elements, or next to nothing is compared.
        constexpr int few = 3;
        const bool isAskedSooner = m_elements.size() <= few || !candidate.isValid();
        return isAskedSooner ? equalsAny(candidate, m_elements) : containsByImages(candidate);
    }

    /// The elements in the order in which they came.
    const QVariantList &elements() const
    {
        return m_elements;
    }

private:
    // The elements as candidates of one form see them, as far as one has come to them.
    struct View
    {
        CandidateForm form;
        std::vector<quint16> images;
        std::vector<int> unseen; // positions of the elements that have no image
    };

    bool containsByImages(const QVariant &candidate);
    View *viewFor(const QVariant &candidate);
    void extend(View &view) const;
    bool containsIn(const View &view, int from, const QVariant &candidate, SoughtImage sought) const;

    QVariantList m_elements;
    int m_capacity;
    std::vector<View> m_views;
};

/// The position of the first element of \a list that equals \a value, by elementsEqual() with the element
/// as the left operand; -1 when there is none.
int indexOfEqual(const QVariantList &list, const QVariant &value);
