-- The test objects beside the sample tables, for the database tabulor_sample. The reader's
-- search path is reports, then public.
SET client_encoding = 'UTF8';

CREATE VIEW "Order Details Extended" AS
SELECT d."OrderID", o."OrderDate", c."CompanyName" AS "Customer", c."Country",
       p."ProductName" AS "Product", p."Category", d."Quantity", d."UnitPrice", d."Discount",
       round(d."Quantity" * d."UnitPrice"::numeric * (1 - d."Discount"::numeric), 2)
           AS "ExtendedPrice"
FROM "Order Details" AS d
JOIN "Orders" AS o ON o."OrderID" = d."OrderID"
JOIN "Customers" AS c ON c."CustomerID" = o."CustomerID"
JOIN "Products" AS p ON p."ProductID" = d."ProductID"
ORDER BY d."OrderID", d."LineNo";

CREATE MATERIALIZED VIEW "Regional Totals" AS
SELECT r."RegionName", count(*) AS "Customers"
FROM "Customers" AS c JOIN "Regions" AS r ON r."RegionID" = c."RegionID"
GROUP BY r."RegionName" ORDER BY r."RegionName";

-- A linked table: rows from outside the database.
CREATE EXTENSION file_fdw;
CREATE SERVER outside FOREIGN DATA WRAPPER file_fdw;
CREATE FOREIGN TABLE "Linked Regions" ("RegionID" integer, "RegionName" text)
    SERVER outside OPTIONS (program 'printf "1,North\n2,South\n"', format 'csv');

-- A schema searched before public: its objects come first, and its "Shadow" hides public's.
CREATE SCHEMA reports;
ALTER ROLE report_reader IN DATABASE tabulor_sample SET search_path = reports, public;
CREATE DOMAIN reports.amount AS money;
CREATE TABLE reports."Every Type" (
    id integer, small smallint, big bigint, single real, double double precision,
    exact numeric(12, 3), price money, budget reports.amount, flag boolean, day date,
    moment timestamp, instant timestamptz, clock time, label varchar(20), initials char(3),
    body text, raw bytea, key uuid, doc jsonb, span interval, tags text[]);
INSERT INTO reports."Every Type" VALUES
    (1, -32768, 9007199254740993, 1.5, 0.1, 1234567.125, -1234.56, 99.99, true, '2024-02-29',
     '2024-02-29 13:45:30.25', '2024-02-29 13:45:30+02', '23:59:59', 'Ünïcödé 名前', 'ab',
     E'two\nlines', '\x00ff10', 'a0eebc99-9c0b-4ef8-bb6d-6bb9bd380a11', '{"a": [1, 2]}',
     '1 day 02:00:00', '{x,"y z"}'),
    (2, NULL, NULL, 'NaN', '-Infinity', NULL, NULL, NULL, false, 'infinity', NULL, NULL, NULL,
     '', NULL, NULL, '\x', NULL, NULL, NULL, NULL),
    (3, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL,
     NULL, NULL, NULL, NULL, NULL);
CREATE TABLE reports."Shadow" (source text);
INSERT INTO reports."Shadow" VALUES ('reports');
CREATE TABLE public."Shadow" (source text);
INSERT INTO public."Shadow" VALUES ('public');
CREATE VIEW reports."Monthly Orders" AS
SELECT date_trunc('month', "OrderDate")::date AS "Month", count(*) AS "Orders"
FROM public."Orders" GROUP BY 1 ORDER BY 1;

-- Out of the search path, and a table the reader may not read: neither is listed or opened.
CREATE SCHEMA hidden;
CREATE TABLE hidden."Salaries" (amount money);
CREATE TABLE public."Secrets" (code text);
INSERT INTO public."Secrets" VALUES ('hush');

-- Names that would change a statement they were pasted into; each table holds its number.
CREATE TABLE "Say ""cheese""; DROP TABLE ""Orders""; --" (x integer);
INSERT INTO "Say ""cheese""; DROP TABLE ""Orders""; --" VALUES (1);
CREATE TABLE "Robert'); DROP TABLE ""Orders"";--" (x integer);
INSERT INTO "Robert'); DROP TABLE ""Orders"";--" VALUES (2);
CREATE TABLE "名前 Ünïcödé" (x integer);
INSERT INTO "名前 Ünïcödé" VALUES (3);
CREATE TABLE "  spaced  " (x integer);
INSERT INTO "  spaced  " VALUES (4);
CREATE TABLE "A name of sixty-three bytes, the longest that the server keeps!" (x integer);
INSERT INTO "A name of sixty-three bytes, the longest that the server keeps!" VALUES (5);

-- More rows than anyone should read to fill the working view.
CREATE TABLE "Numbers" AS SELECT n::integer AS n FROM generate_series(1, 200000) AS n;

-- Rows that make sorting hard, for a report the server sorts: empty texts beside NULLs, case,
-- accents and a column collation, decimals that are equal as doubles, -0, big integers, money,
-- dates beside 'infinity', instants in two zones, times, binary values and many ties. Rows
-- are inserted out of order, so that ties show the table's own order.
CREATE TABLE "Awkward Sort" (
    id integer, grp text COLLATE "C", sub varchar(10), day date, moment timestamptz,
    clock time, qty bigint, price numeric(10, 3), ratio double precision, cost money,
    flag boolean, raw bytea, key uuid);
INSERT INTO "Awkward Sort"
SELECT i,
  CASE i % 7 WHEN 0 THEN NULL WHEN 1 THEN 'apple' WHEN 2 THEN 'Apple' WHEN 3 THEN 'été'
             WHEN 4 THEN 'ete' WHEN 5 THEN '' ELSE 'Éclair' END,
  CASE i % 5 WHEN 0 THEN 'b' WHEN 1 THEN 'B' WHEN 2 THEN '10' WHEN 3 THEN '9.5' ELSE NULL END,
  CASE i % 9 WHEN 0 THEN 'infinity' WHEN 1 THEN '-infinity' WHEN 2 THEN NULL
             ELSE date '2020-01-01' + (i * 37 % 900) END,
  timestamptz '2024-03-31 00:30:00+01' + (i % 11) * interval '20 minutes'
      + CASE WHEN i % 2 = 0 THEN interval '0' ELSE interval '1 hour' END,
  time '00:00' + (i * 13 % 50) * interval '1 minute',
  CASE i % 6 WHEN 0 THEN 9007199254740993 WHEN 1 THEN 9007199254740992 ELSE i % 13 END,
  CASE i % 4 WHEN 0 THEN 1.000 WHEN 1 THEN 1.0 WHEN 2 THEN NULL ELSE (i % 17) / 8.0 END,
  CASE i % 3 WHEN 0 THEN -0.0 WHEN 1 THEN 0.0 ELSE (i % 23) / 7.0 END,
  ((i % 19) * 1.25)::money,
  CASE WHEN i % 10 = 0 THEN NULL ELSE i % 3 = 0 END,
  CASE WHEN i % 8 = 0 THEN NULL ELSE decode(lpad(to_hex(i % 5), 2, '0'), 'hex') END,
  CASE WHEN i % 4 = 0 THEN NULL
       ELSE ('00000000-0000-0000-0000-0000000000' || lpad(to_hex(i % 40), 2, '0'))::uuid END
FROM generate_series(1, 3000) AS g(i) ORDER BY (i * 7919) % 3001;
CREATE VIEW "Awkward Sort View" AS SELECT * FROM "Awkward Sort";

-- Reading "Noted Reads" writes to "Reads", which a read-only transaction refuses.
CREATE TABLE "Reads" (at timestamptz);
CREATE FUNCTION note_read() RETURNS bigint LANGUAGE sql VOLATILE AS
    $$ INSERT INTO public."Reads" VALUES (now()); SELECT count(*) FROM public."Reads" $$;
CREATE VIEW "Noted Reads" AS SELECT note_read() AS reads;

-- The settings of the session that reads a report.
CREATE VIEW "Session" AS
SELECT current_setting('transaction_read_only') AS read_only,
       current_setting('default_transaction_read_only') AS default_read_only;

-- The reader may change any table it sees: only the read-only session keeps it from writing.
GRANT USAGE ON SCHEMA reports, hidden TO report_reader;
GRANT SELECT, INSERT, UPDATE, DELETE ON ALL TABLES IN SCHEMA public, reports, hidden
    TO report_reader;
REVOKE ALL ON public."Secrets" FROM report_reader;
