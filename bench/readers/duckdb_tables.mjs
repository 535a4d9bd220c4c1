// duckdb_tables.mjs FILE...: what DuckDB reads in each file with its defaults, as a line of JSON.
import { DuckDBInstance } from '@duckdb/node-api';

const connection = await (await DuckDBInstance.create(':memory:')).connect();
for (const file of process.argv.slice(2)) {
  try {
    const table = await connection.runAndReadAll(`select * from read_csv('${file}')`);
    console.log(JSON.stringify({ rows: table.getRowsJson(), types: table.columnTypes().map(String) }));
  } catch (fault) {
    console.log(JSON.stringify({ fault: String(fault.message) }));
  }
}
