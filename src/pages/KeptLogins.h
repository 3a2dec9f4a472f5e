#pragma once

class LoginFields;
class QString;
class WebPage;

/// What users had kept in the desktop's keyring to sign in with, by who asks. The keyring answers
/// when it likes; nothing waits for it.
namespace KeptLogins {
/// Fills in what is kept under `key`, where the user has not begun to. `wasWrong`: it only marks
/// the fields as kept.
void fill(LoginFields &fields, const QString &key, bool wasWrong);
/// The user signs in with that: keeps it as soon as the page has come by it, or removes what he
/// wants to be kept no more.
void settle(WebPage &page, const LoginFields &fields, const QString &key);
}
