#pragma once

#include "CellStore.h"
#include "ComTypes.h"
#include "Provider.h"

// The type of a field by its DataTypeEnum.
ColumnType columnTypeOf(LONG dataType);

// Appends the value as a cell's text; its locale is nobody's.
void appendValue(CellStore& rows, const VARIANT& value);
