#include "resources/string_table.h"

#include <algorithm>
#include <iterator>

namespace jotlet {

namespace {

struct Entry {
    int id;
    std::string_view text;
};

// Ordered by id.
constexpr Entry kTexts[] = {
    {100,
     "Jotlet are the electronic equivalent of paper sticky notes. Use Jotlet to jot down questions, ideas, reminders, "
     "and anything you would write on note paper."},
    {101, "You did not enter the same password. Try again."},
    {102, "Program can't do this. You don't have permission."},
    {103, "Program can't open this file. Incorrect password."},
    {104, "Do you want to delete this category ?"},
    {105, "Do you want to delete this Jotlet text ?"},
    {106, "Program can't edit this entry. It is being edited by another user. Try again."},
    {107, "From date must be earlier than the To date."},
    {108, "Do you want to delete this E-Book record ?"},
    {109, "Data on server !"},
    {110, "Item put on Events panel."},
    {111,
     "You have made changes to a group event. Would you like to notify the participants and resource managers of these "
     "changes ?"},
    {113, "This file alredy exists.\r\nPlease selact another file name."},
    {114, "Error in creating a file."},
    {117, "Cut\tCtrl+X"},
    {118, "Copy\tCtrl+C"},
    {119, "Paste\tCtrl+V"},
    {120, "New...\tInsert"},
    {121, "Edit...\tEnter"},
    {122, "Delete...\tDelete"},
    {123, "Internet Events..."},
    {126, "Do you want to accept this event ?"},
    {130, "%s has invited you to the selected event."},
    {131, "%s has canceld the selected event."},
    {132, "%s has accepted the selected event."},
    {133, "%s has declined the selected event."},
    {134, "Do you want to delete this event ?"},
    {135, "Item put on Works Panel and Outgoing Box."},
    {136, "Registration on server was successful."},
    {137, "User with this e-mail address already exist."},
    {138, "Unable to connect to server"},
    {139, "User with %s address does not exist on Marlin server."},
    {140, "Undo delete\tCtrl+Z"},
    {142, "Open attachment...\tCtrl+A"},
    {2010, "January"},
    {2011, "February"},
    {2012, "March"},
    {2013, "April"},
    {2014, "May"},
    {2015, "June"},
    {2016, "July"},
    {2017, "August"},
    {2018, "September"},
    {2019, "October"},
    {2020, "November"},
    {2021, "December"},
    {2022, "Sunday"},
    {2023, "Monday"},
    {2024, "Tuesday"},
    {2025, "Wednesday"},
    {2026, "Thursday"},
    {2027, "Friday"},
    {2028, "Saturday"},
    {2029, "Unknown"},
    {2030, "Su"},
    {2031, "Mo"},
    {2032, "Tu"},
    {2033, "We"},
    {2034, "Th"},
    {2035, "Fr"},
    {2036, "Sa"},
    {2037, "S"},
    {2038, "M"},
    {2039, "T"},
    {2040, "W"},
    {2041, "T"},
    {2042, "F"},
    {2043, "S"},
    {3000, "New"},
    {3001, "Edit"},
    {3002, "Del"},
    {3003, "Find"},
    {3004, "File"},
    {3005, "Help"},
    {3006, "&New...\tCtrl+N"},
    {3007, "&Open...\tCtrl+O"},
    {3008, "General O&ptions..."},
    {3009, "Network P&asswords..."},
    {3010, "&Exit"},
    {3011, "&Contents...\tF1"},
    {3012, "&About..."},
    {3013, "Co&mpact..."},
    {3014, "E-Book"},
    {3016, "Marlin &Server Setup"},
    {3019, "&Save As..."},
    {3050, "&Import..."},
    {3051, "&Export..."},
    {3052, "&Print Report..\tCtrl+P"},
    {4018, "Equivalent"},
    {4019,
     "Jotlet are the electronic equivalent of paper sticky notes. Use Jotlet to jot down questions, ideas, reminders, "
     "and anything you would write on note paper."},
    {4020, "Colors"},
    {4021, "Color of Jotlet items can be changed to allow easier recognition."},
    {4022, "Alarm"},
    {4023,
     "Jotlet provides the user with an alarm. Alarm can be set to open URL address, e-mail window or a certain "
     "document."},
    {4024, "Texts"},
    {4025, "In Jotlet, longer and more detailed texts can be entered."},
};

constexpr bool Before(const Entry& a, const Entry& b)
{
    return a.id < b.id;
}
static_assert(std::is_sorted(std::begin(kTexts), std::end(kTexts), Before));

}  // namespace

std::string_view LoadStringResource(int id)
{
    const auto* found = std::lower_bound(std::begin(kTexts), std::end(kTexts), Entry{id, {}}, Before);
    return found != std::end(kTexts) && found->id == id ? found->text : std::string_view{};
}

}  // namespace jotlet
