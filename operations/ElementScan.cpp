#include "ElementScan.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace
{
bool isOfCommonKind(const QVariant &value)
{
    const int kind = value.userType();
    return kind == QMetaType::Int || kind == QMetaType::Double || kind == QMetaType::QString;
}

// Whether a double may equal another one: those that differ by no more than 1e-12 of the smaller do. A NaN
// or an infinity is never ruled out.
class CloseTo
{
public:
    explicit CloseTo(double value) : m_value(value), m_reach(std::abs(value) * 2e-12) { }

    bool operator()(double image) const
    {
        return !(std::abs(image - m_value) > m_reach);
    }

private:
    double m_value;
    double m_reach;
};

// What int, double and text elements look like that may equal a value: the value in each of these kinds.
class ScalarLikeness
{
public:
    explicit ScalarLikeness(const QVariant &value)
        : m_isKnown(isOfCommonKind(value)), m_int(value.toInt()), m_closeTo(value.toDouble()),
          m_text(value.toString())
    {
    }

    bool mayEqual(const QVariant &candidate) const
    {
        switch (m_isKnown ? candidate.userType() : QMetaType::UnknownType) {
        case QMetaType::Int:
            return candidate.toInt() == m_int;
        case QMetaType::Double:
            return m_closeTo(candidate.toDouble());
        case QMetaType::QString:
            return mayEqualText(*static_cast<const QString *>(candidate.constData()));
        default:
            return true;
        }
    }

private:
    bool mayEqualText(const QString &text) const
    {
        return text.size() == m_text.size() && (text.isEmpty() || text.back() == m_text.back());
    }

    bool m_isKnown;
    int m_int;
    CloseTo m_closeTo;
    QString m_text;
};

// The same for lists, too: lists that may be equal are as long as each other and begin alike.
class Likeness
{
public:
    explicit Likeness(const QVariant &value)
        : m_list(listIn(value)), m_first(m_list && !m_list->isEmpty() ? m_list->constFirst() : value)
    {
    }

    bool mayEqual(const QVariant &candidate) const
    {
        if (!m_list)
            return m_first.mayEqual(candidate);
        const QVariantList *list = listIn(candidate);
        return !list
            || (list->size() == m_list->size() && (list->isEmpty() || m_first.mayEqual(list->constFirst())));
    }

private:
    static const QVariantList *listIn(const QVariant &value)
    {
        return value.userType() == QMetaType::QVariantList
            ? static_cast<const QVariantList *>(value.constData())
            : nullptr;
    }

    const QVariantList *m_list; // null when the value is no list, ...
    ScalarLikeness m_first; // ... and this is the value itself
};

// How many elements there have to be for images to take less time than asking.
int fewestFor(int kind)
{
    switch (kind) {
    case QMetaType::QDateTime:
        return 100; // a local time has to be looked up
    case QMetaType::QVariantList:
    case QMetaType::QDate:
    case QMetaType::QTime:
        return 8;
    case -1:
        return std::numeric_limits<int>::max();
    default:
        return 0;
    }
}
} // namespace

ElementScan::ElementScan(int capacity) : m_capacity(capacity)
{
    m_elements.reserve(capacity);
}

ElementScan::ElementScan(const QVariantList &elements) : m_elements(elements), m_capacity(elements.size()) { }

void ElementScan::append(const QVariant &element)
{
    m_elements.append(element);
}

bool ElementScan::containsByImages(const QVariant &candidate)
{
    View *const view = viewFor(candidate);
    const auto sought = view ? view->form.sought(candidate) : std::nullopt;
    if (!sought)
        return equalsAny(candidate, m_elements);
    for (int from = 0; from < m_elements.size(); from = static_cast<int>(view->images.size())) {
        if (from == static_cast<int>(view->images.size()))
            extend(*view);
        if (containsIn(*view, from, candidate, *sought))
            return true;
    }
    return false;
}

// The view of candidates like this one; null when asking is quicker or there are no images.
ElementScan::View *ElementScan::viewFor(const QVariant &candidate)
{
    constexpr std::size_t mostForms = 16; // of kinds there are few, but lists can differ without end
    const int kind = CandidateForm::kindOf(candidate);
    for (View &view : m_views) {
        if (view.form.fits(kind, candidate))
            return &view;
    }
    if (m_elements.size() < fewestFor(kind)
        || (kind == QMetaType::QVariantList && m_views.size() >= mostForms))
        return nullptr;
    m_views.push_back({CandidateForm(candidate), {}, {}});
    m_views.back().images.reserve(static_cast<std::size_t>(std::max(m_capacity, m_elements.size())));
    return &m_views.back();
}

// Makes the next images. Those behind an element that a candidate equals may never be needed.
void ElementScan::extend(View &view) const
{
    constexpr int atATime = 64;
    const auto from = static_cast<int>(view.images.size());
    const int to = std::min(from + atATime, m_elements.size());
    for (int i = from; i < to; ++i) {
        const auto image = view.form.imageOf(m_elements.at(i));
        if (!image)
            view.unseen.push_back(i);
        view.images.push_back(image.value_or(0));
    }
}

// Asks from the position `from` to the end of the images.
bool ElementScan::containsIn(const View &view, int from, const QVariant &candidate, SoughtImage sought) const
{
    const quint16 *const images = view.images.data();
    const auto end = static_cast<int>(view.images.size());
    auto unseen = std::lower_bound(view.unseen.cbegin(), view.unseen.cend(), from);
    for (int i = from; i < end; ++i) {
        const int stop = unseen == view.unseen.cend() ? end : *unseen;
        i = static_cast<int>(findImage(images + i, images + stop, sought) - images);
        if (i == end)
            return false;
        if (i == stop)
            ++unseen;
        if (elementsEqual(candidate, m_elements.at(i)))
            return true;
    }
    return false;
}

int indexOfEqual(const QVariantList &list, const QVariant &value)
{
    const Likeness likeness(value);
    const auto found = std::find_if(list.cbegin(), list.cend(), [&](const QVariant &candidate) {
        return likeness.mayEqual(candidate) && elementsEqual(candidate, value);
    });
    return found == list.cend() ? -1 : int(found - list.cbegin());
}
