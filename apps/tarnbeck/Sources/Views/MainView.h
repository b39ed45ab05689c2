// The one screen of the application, without a toolkit: it holds the view state, observes the
// scanner, and says what is to be drawn. Changes are gathered: however many there are in a turn of
// the main loop, the content is worked out anew once. Main thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "CaffeinateController.h"
#include "MainViewContent.h"
#include "NameCollator.h"
#include "ObserverList.h"
#include "RepositoryScanner.h"
#include "RepositorySections.h"

namespace tarnbeck {

class MainView {
  public:
    struct Services {
        RepositoryScanner& scanner;
        system_awake::CaffeinateController& caffeinateController;
        const NameCollator& collator;
        RepositorySections::Services sections;  // `callbacks` are filled in by the view
        std::function<void()> onOpenSettings;
    };
    struct Host {
        bool embedToolbarInContent = true;
        bool usesPopoverAppearance = false;
    };
    MainView(Services services, Host host);
    ~MainView();
    MainView(const MainView&) = delete;
    MainView& operator=(const MainView&) = delete;

    // --- What is shown ---

    const MainViewContent& content() const { return content_; }
    // Told after the content has changed.
    using Observers = ObserverList<>;
    [[nodiscard]] Observers::Token observe(Observers::Observer observer);

    // The section of a path that `content` names; worked out when asked for, and kept until it
    // changes. Null for other paths.
    std::shared_ptr<const SectionContent> section(const std::string& path);
    // Its height, without making its rows.
    double sectionHeight(const std::string& path);

    // The view was put on the screen, or taken from it: ages are worked out anew once a minute only
    // while it can be seen.
    void setVisible(bool visible);

    // --- What the user does ---

    void toggleViewMode();
    void scan();
    void chooseSort(SortMode mode);
    void equalize();
    void toggleAwake();
    void openSettings();
    void chooseFilter(FilterMode mode);
    void chooseDomain(DomainMode mode);
    void setSearchText(std::string text);
    void toggleSection(const std::string& path);
    // Does what `kind` asks of the row, or of the header where `rowId` is empty; see
    // `RepositorySections::perform`.
    struct Request {
        const std::string& path;
        const std::string& rowId;
        RowActionKind kind;
        std::size_t occurrence = 0;
    };
    void perform(const Request& request);
    void answerAlert(std::size_t button);

  private:
    MainViewContent content_;
    Observers observers_;
};

}  // namespace tarnbeck
