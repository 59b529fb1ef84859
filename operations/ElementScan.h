#pragma once

#include "ListFunctions.h"

#include <QVariant>

#include <vector>

/// A sequence of list elements that tells whether one of them equals a candidate, by elementsEqual().
///
/// It is a plain scan over all elements, made cheap: beside the elements stands, in one contiguous array,
/// what each of them looks like to a candidate of one kind (its image), and an element whose image does
/// not match cannot be equal. Whatever does match is put to elementsEqual() itself, so the images decide
/// nothing but what need not be asked. They are made for the kinds that scripts mostly hold: `int`,
/// `double` and text. A candidate of another kind is compared with every element, and an element of
/// another kind with every candidate.
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
        // Asking about the first element outright spares lists of equal elements the images.
        return !m_elements.isEmpty()
            && (elementsEqual(candidate, m_elements.constFirst()) || containsByImages(candidate));
    }

    /// The elements in the order in which they came.
    const QVariantList &elements() const
    {
        return m_elements;
    }

private:
    bool containsByImages(const QVariant &candidate);

    template<typename Image, typename Matches>
    bool containsMatch(const QVariant &candidate, std::vector<Image> &images, Matches matches);

    QVariantList m_elements;
    std::vector<int> m_otherKinds; // positions of the elements that have no images, ...
    int m_kindsKnown = 0; // ... as far as a candidate with an image has asked for it
    // One image for each element, as far as a candidate of the kind has asked for it.
    std::vector<int> m_intImages;
    std::vector<double> m_doubleImages;
    std::vector<quint64> m_textImages;
};

/// The position of the first element of \a list that equals \a value, by elementsEqual() with the element
/// as the left operand; -1 when there is none.
int indexOfEqual(const QVariantList &list, const QVariant &value);
