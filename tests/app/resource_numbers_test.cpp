// Language packs are made apart from the program, some of them by hand: the numbers of its menus
// and commands stay what they are.
#include <gtest/gtest.h>

#include <map>
#include <set>

#include "platform/handles.h"
#include "text/resources.h"
#include "ui/popup/menu_items.h"

namespace {

void CollectCommands(HMENU menu, std::set<UINT>& commands) {
    ui::MenuItem item;
    for (UINT position = 0; ui::ReadMenuItem(menu, position, &item); ++position) {
        if (item.submenu) {
            CollectCommands(item.submenu, commands);
        } else if (!item.Separator()) {
            commands.insert(item.id);
        }
    }
}

std::set<UINT> CommandsOf(UINT menu) {
    std::set<UINT> commands;
    CollectCommands(platform::UniqueMenu(text::LoadMenuResource(menu)).Get(), commands);
    return commands;
}

TEST(ResourceNumbers, EveryMenuHasTheCommandsOfItsNumber) {
    // Languages, settings, about, exit: in every view's menu.
    const std::set<UINT> common = {600, 601, 602, 603, 610, 680, 36608, 57664, 57665};
    const std::map<UINT, std::set<UINT>> ofViews = {
        {500,
         {618, 619, 650, 651, 57634, 57635, 57637, 57638, 617, 611, 612, 614, 687, 688, 689, 690}},
        {501, {615, 616, 613, 614, 670, 671, 697, 696}},
        {503, {615, 620, 614, 671, 691, 692, 693, 698}},
        {504, {}},
        {505, {614, 671, 691, 698, 699}},
    };
    for (auto [menu, commands] : ofViews) {
        commands.insert(common.begin(), common.end());
        EXPECT_EQ(CommandsOf(menu), commands) << menu;
    }
    EXPECT_EQ(CommandsOf(502), (std::set<UINT>{600, 601, 602, 603}));
    EXPECT_EQ(CommandsOf(506), (std::set<UINT>{612, 57634, 57635, 2}));
    EXPECT_EQ(CommandsOf(511), (std::set<UINT>{1, 614, 550, 551, 687, 688}));
    EXPECT_EQ(CommandsOf(120), (std::set<UINT>{1, 2}));
    EXPECT_EQ(CommandsOf(121), std::set<UINT>{1});
    EXPECT_EQ(CommandsOf(122), std::set<UINT>{2});
}

}  // namespace
