#pragma once

class QWidget;

namespace orvalen::kit {

/// Teaches the desktop's screen readers our controls. Once per process is enough; calling it again does nothing.
void installAccessibility();

/// Nothing that a screen reader should meet: a picture beside the words that say the same, a line, a frame.
void hideFromReaders(QWidget &widget);

/// Tells screen readers that the name of `widget` is another one now.
void announceName(QWidget &widget);

/// Tells them that a slider stands elsewhere.
void announceValue(QWidget &widget, double value);

/// Tells them that a tab is or is no longer the one selected.
void announceSelected(QWidget &tab);

/// As announceName, and asks for it to be said at once.
void announceAlert(QWidget &widget);

} // namespace orvalen::kit
