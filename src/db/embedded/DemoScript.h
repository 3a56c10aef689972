#pragma once

#include <string>
#include <vector>

// The statements that build the sample schema, in order, as the file demo.sql has them.
std::vector<std::string> demoScript();
