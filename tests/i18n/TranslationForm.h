#pragma once

#include <QString>
#include <QStringList>

// What a translation must keep of its source text for the code that shows it to work: the
// pieces are compared between the source and the translation.
namespace TranslationForm {

// The "%1", "%2"... markers, sorted.
QStringList placeholders(const QString& text);

// "Label (*.ext)|*.ext||": the pattern part after the label, or empty for other texts.
QString filterPattern(const QString& text);

// The file patterns in parentheses, "(*.db *.sqlite)", in order: a Qt name filter reads them.
QStringList patternGroups(const QString& text);

// The upper-case words (command names such as VRINSAUTO, folder names such as DADOS), sorted.
QStringList upperCaseWords(const QString& text);

QString leadingSpace(const QString& text);
QString trailingSpace(const QString& text);

} // namespace TranslationForm
