// SPDX-License-Identifier: MIT
// The library counts characters, which Qt counts as one or two units: positions are converted by
// the text before them.
#include "kortools/ui/qt/back_end.h"
#include "kortools/ui/qt/text.h"
#include "kortools/ui/qt/window_on.h"

#include "kortools/core/throw.h"

#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTextEdit>

#include <algorithm>

namespace kortools::ui::qt {
namespace {

int count_characters(QString const &text, int units)
{
    return static_cast<int>(text.left(units).toStdWString().size());
}

int count_units(QString const &text, int characters)
{
    std::wstring const wide = text.toStdWString();
    auto const count
        = std::clamp(static_cast<long long>(characters), 0LL, static_cast<long long>(wide.size()));
    return static_cast<int>(QString::fromWCharArray(wide.data(), int(count)).size());
}

struct Selection { // in Qt's units
    int start;
    int end;
};

// --- What the three kinds of field have in common, under one name

QString get_text(QLineEdit const &field)
{
    return field.text();
}
void set_text(QLineEdit &field, QString const &text)
{
    field.setText(text);
}
void insert(QLineEdit &field, QString const &text)
{
    field.insert(text);
}
Selection get_selection(QLineEdit const &field)
{
    int const caret = field.cursorPosition();
    return field.hasSelectedText() ? Selection { field.selectionStart(), field.selectionEnd() }
                                   : Selection { caret, caret };
}
void select(QLineEdit &field, Selection const &range)
{
    if (range.start == range.end)
        field.setCursorPosition(range.start); // and selects nothing
    else
        field.setSelection(range.start, range.end - range.start);
}

template <class Field> QString get_text(Field const &field)
{
    return field.toPlainText();
}
template <class Field> void set_text(Field &field, QString const &text)
{
    field.setPlainText(text);
}
template <class Field> void insert(Field &field, QString const &text)
{
    field.textCursor().insertText(text);
}
template <class Field> Selection get_selection(Field const &field)
{
    QTextCursor const cursor = field.textCursor();
    return { cursor.selectionStart(), cursor.selectionEnd() };
}
template <class Field> void select(Field &field, Selection const &range)
{
    QTextCursor cursor = field.textCursor();
    cursor.setPosition(range.start);
    cursor.setPosition(range.end, QTextCursor::KeepAnchor);
    field.setTextCursor(cursor);
}

template <class Field> class EditOn : public WindowOn<CEdit> {
public:
    explicit EditOn(Field &field)
        : WindowOn(std::make_shared<Surface>(field, nullptr))
        , m_field(&field)
    {
    }

    CXTString<wchar_t> GetText() const override { return to_text(get_text(*m_field)); }
    void SetText(wchar_t const *text) override { set_text(*m_field, to_qt(text)); }
    void GetSel(int &start, int &end) const override
    {
        QString const text = get_text(*m_field);
        Selection const range = get_selection(*m_field);
        start = count_characters(text, range.start);
        end = count_characters(text, range.end);
    }

    // Beyond the end is the end, and so is a negative `end`.
    void SetSel(int start, int end) override
    {
        QString const text = get_text(*m_field);
        int const last = end < 0 ? static_cast<int>(text.size()) : count_units(text, end);
        select(*m_field, { count_units(text, start), last });
    }
    void ReplaceSel(wchar_t const *text) override { insert(*m_field, to_qt(text)); }

private:
    Field *m_field;
};

} // namespace

std::unique_ptr<CEdit> attach_edit(QWidget *widget)
{
    if (auto *const line = qobject_cast<QLineEdit *>(widget))
        return std::make_unique<EditOn<QLineEdit>>(*line);
    if (auto *const plain = qobject_cast<QPlainTextEdit *>(widget))
        return std::make_unique<EditOn<QPlainTextEdit>>(*plain);
    if (auto *const rich = qobject_cast<QTextEdit *>(widget))
        return std::make_unique<EditOn<QTextEdit>>(*rich);
    core::throw_invalid_argument();
}

} // namespace kortools::ui::qt
