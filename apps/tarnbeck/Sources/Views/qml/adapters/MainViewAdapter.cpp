#include "MainViewAdapter.h"

#include <utility>

#include "Overloaded.h"
#include "QtText.h"

namespace tarnbeck {

namespace {

QVariantMap pillValue(const ToolbarPill& pill) {
    return {{"title", qtText(pill.title)},
            {"symbol", qtText(pill.symbol)},
            {"help", qtText(pill.help)},
            {"isSelected", pill.isSelected},
            {"accessibleValue", qtText(pill.accessibleValue)}};
}

QVariantList statusPillValues(const std::vector<StatusPill>& pills) {
    QVariantList values;
    for (const StatusPill& pill : pills) {
        values.append(QVariantMap{{"symbol", qtText(pill.symbol)},
                                  {"text", qtText(pill.text)},
                                  {"color", qtText(pill.color)},
                                  {"isProminent", pill.isProminent}});
    }
    return values;
}

template <TextEnumeration Mode>
QStringList titlesOf(Mode tag) {
    QStringList titles;
    for (const auto& [mode, title] : rawValues(tag)) titles.append(qtText(title));
    return titles;
}

QVariantList sortMenuValues(const std::vector<SortMenuEntry>& entries) {
    QVariantList values;
    for (const SortMenuEntry& entry : entries) {
        values.append(QVariantMap{{"mode", static_cast<int>(entry.mode)},
                                  {"title", qtText(rawValue(entry.mode))},
                                  {"symbol", qtText(entry.symbol)},
                                  {"isChecked", entry.isChecked}});
    }
    return values;
}

QVariantMap stripValue(const ControlStrip& strip) {
    return {
        {"viewToggle", pillValue(strip.viewToggle)},
        {"scan", pillValue(strip.scan)},
        {"sort", pillValue(strip.sort)},
        {"sortMenu", sortMenuValues(strip.sortMenu)},
        {"equalize", strip.equalize ? QVariant(pillValue(*strip.equalize)) : QVariant()},
        {"awake", pillValue(strip.awake)},
        {"awakeFailure", qtText(strip.awakeFailure)},
        {"settings", pillValue(strip.settings)},
        {"filter", static_cast<int>(strip.filter)},
        {"domain", static_cast<int>(strip.domain)},
        {"searchText", qtText(strip.searchText)},
        {"clearSearch", strip.clearSearch ? QVariant(pillValue(*strip.clearSearch)) : QVariant()}};
}

}  // namespace

MainViewAdapter::MainViewAdapter(std::unique_ptr<MainView> view)
    : view_(std::move(view)), shown_(view_->content()), sections_(*view_) {
    observation_ = view_->observe([this] { refresh(); });
    takeStrip();
    takeArea();
}

MainViewAdapter::~MainViewAdapter() = default;

void MainViewAdapter::refresh() {
    const MainViewContent before = std::exchange(shown_, view_->content());
    if (before.strip != shown_.strip) {
        takeStrip();
        Q_EMIT stripChanged();
        if (before.strip.has_value() != hasStrip()) Q_EMIT hasStripChanged();
    }
    if (before.area != shown_.area) {
        takeArea();
        Q_EMIT areaChanged();
    }
    if (before.statusBar != shown_.statusBar) Q_EMIT statusBarChanged();
    if (before.toast != shown_.toast) Q_EMIT toastChanged();
    if (before.alert != shown_.alert) Q_EMIT alertChanged();
    if (before.backdropOpacity != shown_.backdropOpacity) Q_EMIT backdropOpacityChanged();
    if (before.splitViewResetToken != shown_.splitViewResetToken) Q_EMIT splitViewReset();
}

void MainViewAdapter::takeStrip() {
    strip_ = shown_.strip ? stripValue(*shown_.strip) : QVariantMap();
}

void MainViewAdapter::takeArea() {
    const SectionList* list = std::get_if<SectionList>(&shown_.area);
    sections_.setList(list);
    std::visit(Overloaded{
                   [&](const EmptyState& state) {
                       area_ = QStringLiteral("empty");
                       areaTexts_ = {{"symbol", qtText(state.symbol)},
                                     {"title", qtText(state.title)},
                                     {"line", qtText(state.line)},
                                     {"button", qtText(state.button)}};
                   },
                   [&](const EmptyResult& result) {
                       area_ = QStringLiteral("noMatch");
                       areaTexts_ = {{"symbol", qtText(result.symbol)},
                                     {"isLoading", result.isLoading},
                                     {"text", qtText(result.text)}};
                   },
                   [&](const SectionList& shown) {
                       area_ = qtText(rawValue(shown.mode));
                       areaTexts_.clear();
                   },
               },
               shown_.area);
}

QVariantMap MainViewAdapter::stripTexts() const {
    return {{"filterLabel", qtText(ControlStrip::filterLabel)},
            {"filterWidth", ControlStrip::filterWidth},
            {"domainWidth", ControlStrip::domainWidth},
            {"searchSymbol", qtText(ControlStrip::searchSymbol)},
            {"searchPrompt", qtText(ControlStrip::searchPrompt)},
            {"searchWidth", ControlStrip::searchWidth}};
}

QStringList MainViewAdapter::filters() const {
    return titlesOf(FilterMode{});
}
QStringList MainViewAdapter::domains() const {
    return titlesOf(DomainMode{});
}

QVariantList MainViewAdapter::pills() const {
    return statusPillValues(shown_.statusBar.pills);
}
QVariantList MainViewAdapter::detailPills() const {
    return statusPillValues(shown_.statusBar.detailPills);
}
QVariantList MainViewAdapter::trailingDetails() const {
    return statusPillValues(shown_.statusBar.trailingDetails);
}

QVariantMap MainViewAdapter::toast() const {
    return {{"message", qtText(shown_.toast.message)},
            {"isVisible", shown_.toast.isVisible},
            {"token", QVariant::fromValue(shown_.toast.token)}};
}

QVariantMap MainViewAdapter::alert() const {
    if (!shown_.alert) return {};
    QVariantList buttons;
    for (const ViewAlert::Button& button : shown_.alert->buttons) {
        buttons.append(QVariantMap{{"title", qtText(button.title)},
                                   {"isDestructive", button.role == ViewAlert::Role::destructive},
                                   {"isCancel", button.role == ViewAlert::Role::cancel}});
    }
    return {{"title", qtText(shown_.alert->title)},
            {"message", qtText(shown_.alert->message)},
            {"buttons", buttons}};
}

void MainViewAdapter::setSearchText(const QString& text) {
    view_->setSearchText(utf8Text(text));
}

void MainViewAdapter::answerAlert(int button) {
    view_->answerAlert(static_cast<std::size_t>(button));
}

}  // namespace tarnbeck
