#pragma once

class QUrl;

namespace tv::reports {

// Opens a URL through the installed opener (QDesktopServices by default);
// true when something took it. Shows no message.
bool launchUrl(const QUrl& url);

} // namespace tv::reports
