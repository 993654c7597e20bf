# Sourced by the benchmarks on a 10,000,000-row table: makes sure it exists and sets $db to
# it. The table has the shape of the reference sales table and is generated once, by the
# engine itself, into a cache folder outside the repository (about 1 GB, a minute or so).
cache="${TABULOR_BENCH_CACHE:-$HOME/.cache/tabulor-bench}"
rows=10000000
db="$cache/sales_$rows.db"
mkdir -p "$cache"
dpkg-query -W -f='${Status}' sqlite3 2>/dev/null | grep -q "install ok installed" ||
    DEBIAN_FRONTEND=noninteractive apt-get install -y -qq sqlite3 >/dev/null

if [ ! -f "$db" ]; then
    # Values follow from the row number, so that every run builds the same table.
    rm -f "$db.part"
    sqlite3 "$db.part" >/dev/null <<SQL
PRAGMA journal_mode = OFF;
PRAGMA synchronous = OFF;
CREATE TABLE sales (id INTEGER, region TEXT, product TEXT, order_date TEXT, customer TEXT,
                    quantity INTEGER, unit_price REAL, amount REAL);
WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < $rows)
INSERT INTO sales
SELECT i,
       'Region ' || (i * 7 % 8),
       'Product ' || (i * 13 % 60),
       date('2020-01-01', '+' || (i * 7919 % 1827) || ' days'),
       printf('Customer %04d Trading Co', i * 104729 % 5000),
       q, p, round(q * p, 2)
FROM (SELECT i, 1 + i * 31 % 250 AS q, 4 + (i * 97 % 89600) / 100.0 AS p FROM n);
SQL
    mv "$db.part" "$db"
fi
