#include "FileBar.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

namespace Workbench
{
FileBar::FileBar(QWidget *parent) : QFrame(parent), m_layout(new QHBoxLayout(this)), m_text(new QLabel)
{
    setObjectName(QStringLiteral("fileBar"));
    setFrameShape(QFrame::StyledPanel);
    setAutoFillBackground(true);
    setBackgroundRole(QPalette::ToolTipBase);
    m_text->setTextFormat(Qt::PlainText);
    m_text->setWordWrap(true);
    m_text->setForegroundRole(QPalette::ToolTipText);
    m_layout->setContentsMargins(8, 4, 8, 4);
    m_layout->addWidget(m_text, 1);
    hide();
}

void FileBar::showText(const QString &text)
{
    const QList<QPushButton *> buttons = findChildren<QPushButton *>();
    for (QPushButton *button : buttons) {
        // One of them may have been pressed just now.
        button->hide();
        button->deleteLater();
    }
    m_text->setText(text);
    setAccessibleName(text);
    show();
}

void FileBar::addButton(const QString &text, bool hides, const std::function<void()> &action)
{
    auto *button = new QPushButton(text);
    connect(button, &QPushButton::clicked, this, [this, hides, action] {
        if (hides)
            hide();
        action();
    });
    m_layout->addWidget(button);
}
} // namespace Workbench
