// What a screen reader finds in the widgets.
#include "toolkit/marli_mini_calendar.h"
#include "toolkit/marlin_class_link_button.h"
#include "toolkit/marlin_class_to_do_priority.h"
#include "toolkit/marlin_slide_bar.h"
#include "toolkit/marlin_time_track.h"
#include "widget_host.h"

namespace jotlet {
namespace {

class DescriptionsTest : public WindowTest {
protected:
    AccessibleDescription Ask(MarlinWnd& widget)
    {
        AccessibleDescription description;
        EXPECT_EQ(widget.Send(kWmDescribe, 0, reinterpret_cast<MessageParam>(&description)), 1);
        return description;
    }
    static std::vector<std::string> Selected(const AccessibleDescription& description)
    {
        std::vector<std::string> names;
        for (const AccessiblePart& part : description.parts) {
            if (part.selected)
                names.push_back(part.name);
        }
        return names;
    }
    Host host;
};

TEST_F(DescriptionsTest, ACalendarHasItsDaysAndTheSelectedOne)
{
    MarliMiniCalendar calendar(1, 5, 3, 2000, 0, 0, 0, 0, 0);
    host.Hold(calendar, Rect::At(0, 0, 106, 130));
    const AccessibleDescription description = Ask(calendar.Grid());
    EXPECT_EQ(description.role, AccessibleRole::Calendar);
    EXPECT_EQ(description.parts.size(), 31u);
    std::string date;
    FormatDate(date, 5, 3, 2000);
    EXPECT_THAT(Selected(description), testing::ElementsAre(date));
}

TEST_F(DescriptionsTest, TheLettersAreButtons)
{
    MarlinClassToDoPriority bar(1, 'a', 'z', 0);
    host.Hold(bar, Rect::At(0, 0, 100, 185));
    bar.SetValue('k', 0);
    FocusWindow(bar.window);
    const AccessibleDescription description = Ask(bar);
    EXPECT_EQ(description.parts.size(), 26u);
    EXPECT_THAT(Selected(description), testing::ElementsAre("k"));
    EXPECT_TRUE(description.parts['k' - 'a'].focused);
}

TEST_F(DescriptionsTest, SlidersTellWhereTheyStand)
{
    MarlinSlideBar bar(1, 7 / 3.0, 0);
    host.Hold(bar, Rect::At(0, 0, 20, 100));
    bar.SetPosition(1);
    EXPECT_EQ(Ask(bar).name, "Row 2 of 3");
    const TimeValue seven{7, 0, 0, kBeforeNoon};
    const TimeValue nine{9, 0, 0, kBeforeNoon};
    MarlinTimeTrack track(2, seven, {11, 0, 0, kAfterNoon}, seven, nine, 5, 0, 0);
    host.Hold(track, Rect::At(50, 0, 100, 250));
    EXPECT_THAT(Ask(track).name, testing::AllOf(testing::HasSubstr("07:00"), testing::HasSubstr("09:00")));
}

TEST_F(DescriptionsTest, ALinkSaysItsText)
{
    MarlinClassLinkButton link(1, "Home page", 0, 0, 0, 0);
    host.Hold(link, Rect::At(0, 0, 100, 20));
    EXPECT_EQ(Ask(link).role, AccessibleRole::Button);
    EXPECT_EQ(Ask(link).name, "Home page");
}

}  // namespace
}  // namespace jotlet
