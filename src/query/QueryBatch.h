#pragma once

#include "colQueries.h"

#include <QString>

// How a script becomes a batch of statements. Plain text rules on purpose: no parsing of SQL, no
// awareness of quotes, strings or PL/SQL blocks. All take time in proportion to the text.

// The script on one line, without its comment lines: a blank, then the trimmed line, for every line
// that ends at CR (a lone LF ends none and vanishes, so a script must come with CR LF). A comment
// behind code and block comments stay, although the former then hides the rest of the batch from
// the server.
QString Strip_Comments(QStringView text);

// QueryType::Select or QueryType::General. "SELECTED" counts as a SELECT; "WITH ...", "(SELECT ..."
// and a statement that begins with a comment do not.
QString Get_Query_Type(QStringView statement);

// Cuts at every ";", inside literals too. A text without any is one statement, even when empty;
// else what follows the last ";" is dropped.
colQueries Split_Queries(QStringView text);

// What Split_Queries drops: the trimmed text behind the last ";", empty when there is no ";".
QString Unterminated_Rest(QStringView text);
