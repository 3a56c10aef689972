#pragma once

class TreeNode;
class TreeNodes;
class modDatabase;

// Adds the users' sessions below the folder. Whatever fails, most often a server that does not let
// the user see them, adds one entry "<Not Available>" instead of a message.
void Load_Sessions(TreeNodes& nodes, TreeNode& folder, modDatabase& database);
