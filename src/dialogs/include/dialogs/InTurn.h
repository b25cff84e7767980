#pragma once

class QDialog;

namespace tarnwick {

/// Whether a dialog that comes up by itself has to wait: while another one blocks its window, it
/// would cover what is asked there and, blocking the window too, keep the answer from being given.
/// Then it is shown (QDialog::show()) when the other one has gone, unless it is gone itself by
/// then. Dialogs that only tell what takes long make nobody wait.
///
/// What the user has just asked for asks nobody's leave: it comes up at once.
bool waitsForTurn(QDialog* dialog);

} // namespace tarnwick
