#include "PlanDisplay.h"

namespace ora {

// last: its operations, indented by their depth. width: of the table's columns, null when nothing
// was explained. bar: with the width of the table.
const std::string_view planDisplayQuery = R"sql(
WITH last AS (
  SELECT id, LPAD(' ', LEVEL - 1) || operation || NVL2(options, ' ' || options, '') operation,
         NVL(object_name, ' ') name, NVL(TO_CHAR(cardinality), ' ') card,
         NVL(TO_CHAR(bytes), ' ') bytes, NVL(TO_CHAR(cost), ' ') cost
    FROM (SELECT t.*, ROWID row_id FROM plan_table t)
   START WITH row_id = (SELECT row_id
                          FROM (SELECT ROWID row_id FROM plan_table WHERE id = 0
                                 ORDER BY ROWID DESC)
                         WHERE ROWNUM = 1)
 CONNECT BY PRIOR id = parent_id AND row_id > PRIOR row_id
   ORDER SIBLINGS BY position),
width AS (
  SELECT GREATEST(MAX(LENGTH(operation)), 9) o, GREATEST(MAX(LENGTH(name)), 4) n,
         GREATEST(MAX(LENGTH(card)), 5) r, GREATEST(MAX(LENGTH(bytes)), 5) b,
         GREATEST(MAX(LENGTH(cost)), 4) c
    FROM last),
found AS (SELECT width.*, RPAD('-', o + n + r + b + c + 21, '-') bar FROM width
           WHERE o IS NOT NULL)
SELECT line plan_table_output
  FROM (SELECT 1 part, 0 id, 'Plan hash value: ' ||
               (SELECT SUM(ORA_HASH(operation || name)) FROM last) line FROM found
         UNION ALL SELECT 2, 0, ' ' FROM found
         UNION ALL SELECT 3, 0, bar FROM found
         UNION ALL SELECT 4, 0, '| Id  | ' || RPAD('Operation', o) || ' | ' || RPAD('Name', n) ||
                   ' | ' || LPAD('Rows', r) || ' | ' || LPAD('Bytes', b) || ' | ' ||
                   LPAD('Cost', c) || ' |' FROM found
         UNION ALL SELECT 5, 0, bar FROM found
         UNION ALL SELECT 6, id, '|' || LPAD(id, 4) || ' | ' || RPAD(operation, o) || ' | ' ||
                   RPAD(name, n) || ' | ' || LPAD(card, r) || ' | ' || LPAD(bytes, b) || ' | ' ||
                   LPAD(cost, c) || ' |' FROM last, found
         UNION ALL SELECT 7, 0, bar FROM found
         UNION ALL SELECT 8, 0, 'Error: cannot fetch last explain plan from PLAN_TABLE'
                     FROM width WHERE o IS NULL)
 ORDER BY part, id
)sql";

} // namespace ora
