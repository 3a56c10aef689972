#include "HelpViewer.h"

#include <QFileInfo>

#include <qt_windows.h>

#include <htmlhelp.h>

namespace {

using HtmlHelpCall = HWND(WINAPI*)(HWND, LPCWSTR, UINT, DWORD_PTR);

// The system's viewer. It stays loaded: its windows live on a thread of its own.
HtmlHelpCall htmlHelp() {
    static const auto call = [] {
        const HMODULE library =
            LoadLibraryExW(L"hhctrl.ocx", nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32);
        return library ? reinterpret_cast<HtmlHelpCall>(
                             reinterpret_cast<void*>(GetProcAddress(library, "HtmlHelpW")))
                       : nullptr;
    }();
    return call;
}

const wchar_t* wide(const QString& text) {
    return reinterpret_cast<const wchar_t*>(text.utf16());
}

class HtmlHelpWindow : public HelpViewer {
public:
    bool showPage(const QString& file, const QString& page) override {
        const QString place = page.isEmpty() ? file : file + QStringLiteral("::") + page;
        return show(file, place, HH_DISPLAY_TOPIC, 0);
    }

    bool showSearch(const QString& file) override {
        HH_FTS_QUERY query{};
        query.cbStruct = sizeof query;
        query.fUniCodeStrings = TRUE;
        query.pszSearchQuery = L"";
        query.iProximity = HH_FTS_DEFAULT_PROXIMITY;
        return show(file, file, HH_DISPLAY_SEARCH, reinterpret_cast<DWORD_PTR>(&query));
    }

    void close() override {
        if (m_isUsed)
            htmlHelp()(nullptr, nullptr, HH_CLOSE_ALL, 0);
    }

private:
    // The viewer itself shows an error page for a file that is missing.
    bool show(const QString& file, const QString& place, UINT command, DWORD_PTR data) {
        if (!QFileInfo::exists(file) || !htmlHelp())
            return false;
        m_isUsed = true;
        return htmlHelp()(nullptr, wide(place), command, data) != nullptr;
    }

    bool m_isUsed = false;
};

} // namespace

std::unique_ptr<HelpViewer> makeHelpViewer() {
    return std::make_unique<HtmlHelpWindow>();
}
