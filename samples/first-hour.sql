-- A first look around the sample database. Every statement ends with a semicolon; lines that begin
-- with two hyphens are left out before the batch runs.

-- Who works where
SELECT * FROM STAFF WHERE PERSON_ID <= 12;

-- The largest orders
SELECT ORDER_ID, CUSTOMER_ID, ORDERED_AT, LINES, TOTAL
FROM ORDER_TOTALS
WHERE TOTAL > 19500
ORDER BY TOTAL DESC;

-- What sells best
SELECT CATEGORY, SUM(SOLD) AS SOLD, SUM(TURNOVER) AS TURNOVER
FROM PRODUCT_SALES
GROUP BY CATEGORY
ORDER BY CATEGORY;

-- Your own tables, from the data dictionary
SELECT TABLE_NAME FROM USER_TABLES ORDER BY TABLE_NAME;
