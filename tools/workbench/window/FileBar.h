#pragma once

#include <QFrame>

#include <functional>

class QLabel;
class QHBoxLayout;

namespace Workbench
{
/// A bar above the script with something to say about its file, and buttons for what can be done about it.
class FileBar : public QFrame
{
    Q_OBJECT

public:
    explicit FileBar(QWidget *parent = nullptr);

    /// Shows \a text with no buttons yet.
    void showText(const QString &text);

    /// Adds a button \a text. When it is pressed, the bar is hidden if \a hides, and then \a action is called.
    void addButton(const QString &text, bool hides, const std::function<void()> &action);

private:
    QHBoxLayout *m_layout;
    QLabel *m_text;
};
} // namespace Workbench
