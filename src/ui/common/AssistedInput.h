#pragma once

#include <functional>

class QAbstractItemView;
class QLineEdit;
class QRadioButton;

namespace orvelle {

// Assistive technology reaches past the keyboard: it writes and selects in
// ways that the toolkit does not report as a user's doing.

/// Lets `field` say that it is modified also when assistive technology has
/// written into it, which the toolkit does not tell from the program's own
/// setText(). After that one, setModified(false) is to be called.
void countAllAsTyped(QLineEdit *field);

/// Calls `store` a moment after assistive technology has written into `field`
/// without giving it the focus, which then never leaves it either. Not for what
/// setText() and setModified(false) did.
void storeWhatIsWrittenUnfocused(QLineEdit *field, std::function<void()> store);

/// The button that empties `field`, with a name.
void addClearButton(QLineEdit *field);

/// Lets Tab lead to the button of a group that is checked, as soon as the group
/// is shown; the toolkit's own order begins with the first one. The arrows go
/// from one to the next. Call for each before one is checked.
void reachWhenChecked(QRadioButton *button);

/// Makes the one selected row the current one, as a click does. Call after the
/// model is set.
void followSelection(QAbstractItemView *view);

} // namespace orvelle
