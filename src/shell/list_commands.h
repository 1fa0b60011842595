#pragma once

#include <string_view>

#include "shell/application.h"

namespace quillmarden {

// What the table list does beyond its own screen. The front calls these for its events.

/// A System was chosen in CmbSystem. Unsaved work of the detail screens is asked about first; when it stays, the box
/// goes back to the former System.
void chooseSystem(Application& app);
/// A click on a row, chosen before or not: loads the table into the detail screen, shows that, and tells the other
/// screens.
void LstTable_Click(Application& app);
/// Shows a table with the keyboard in its field grid: in the detail screen, or in a further one while that is being
/// edited.
void showTable(Application& app, std::string_view tableId);
/// Opens the row in a further detail screen, where the settings say so and the detail screen is to be seen.
void LstTable_DblClick(Application& app);
/// A key on LstTable; false for one without a meaning there.
bool LstTable_Key(Application& app, char key, int shift);
/// Notes the row's kind and opens the popup.
void LstTable_PopUp(Application& app);
/// A double click on a row of lstForm: raises the screen.
void lstForm_DblClick(Application& app);
void mnuFormMin_Click(Application& app);
void mnuFormClose_Click(Application& app);

/// The selected row's table goes to the other open screens.
void pSetCurrentTableName2Info(Application& app);
void mnuOpenDetails_Click(Application& app);
/// Opens the header of a new table, and that of the current row.
void mnuAdd_Click(Application& app);
void mnuUpDate_Click(Application& app);
/// The header of this table, "" for a new one.
void openTableInfo(Application& app, std::string_view tableId);
/// Opens the record of the current System, or an empty one for a new System, in the place of another one.
void CmdSystem_Click(Application& app);
/// Takes the selected rows over for output and offers what can be made of them.
void mnuSelectPut_Click(Application& app);
/// Starts the reader of live databases, which ends this program.
void mnuRev_Click(Application& app);

}  // namespace quillmarden
