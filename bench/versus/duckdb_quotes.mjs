// duckdb_quotes.mjs scan|copy THREADS FILE [OUT]: what DuckDB does with a file of minute bars, types
// and date format given by hand.
import { DuckDBInstance } from '@duckdb/node-api';

const [what, threads, file, out] = process.argv.slice(2);
const connection = await (await DuckDBInstance.create(':memory:', { threads })).connect();
const prices = ['Open', 'High', 'Low', 'Close'];
const types = ["'Date': 'DATE'", "'Time': 'TIME'", ...prices.map((name) => `'${name}': 'DOUBLE'`), "'Volume': 'BIGINT'"];
const source = `read_csv('${file}', header = true, dateformat = '%m/%d/%Y', columns = {${types.join(', ')}})`;
const sums = [...prices, 'Volume'].map((name) => `sum(${name})`);
const query = what === 'scan'
  ? `select count(*), max(Date), max(Time), ${sums.join(', ')} from ${source}`
  : `copy (select * from ${source}) to '${out}' (header)`;
console.log(JSON.stringify((await connection.runAndReadAll(query)).getRowsJson()));
