'use strict';
// Prints, one per line, the V8 configuration macros that an addon built
// against the headers in <include folder> must be compiled with.
//
//   node cmake/v8-defines.js <include/node folder>
//
// V8's object layout depends on how V8 was configured (pointer compression,
// the sandbox, 31-bit small integers, ...), and its headers learn that
// configuration only from macros. The runtime's headers carry it in two files:
// config.gypi holds the variables V8 was built with, and common.gypi the
// conditions that turn those variables into macros. An addon compiled without
// the macros of a runtime that sets them (Electron does) reads V8's objects at
// the wrong offsets. Node.js's own builds set none of them.
const fs = require('fs');
const path = require('path');

/**
 * The defaults common.gypi gives its variables (names ending in %), where
 * they are numbers or strings. Its plain assignments sit under conditions of
 * their own and are left out.
 */
function defaultVariables(common) {
  const variables = {};
  const pattern = /['"]([A-Za-z0-9_]+)%['"]\s*:\s*(-?\d+|'[^'\n]*'|"[^"\n]*")/g;
  for (const [, name, raw] of common.matchAll(pattern)) {
    if (!(name in variables)) variables[name] = /^-?\d+$/.test(raw) ? Number(raw) : raw.slice(1, -1);
  }
  return variables;
}

/**
 * The variables the runtime was configured with: the `variables` of its
 * config.gypi, which older releases write as a Python literal (single quotes,
 * comment lines) and newer ones as JSON.
 */
function configuredVariables(config) {
  if (!config) return {};
  const json = config
    .split('\n')
    .filter((line) => !/^\s*#/.test(line))
    .join('\n')
    .replace(/'/g, '"');
  return JSON.parse(json).variables || {};
}

/** The conditions of a common.gypi that add V8_ macros: [{ condition, defines }]. */
function macroConditions(text) {
  const pattern = /\[\s*(['"])([^'"\n]*)\1\s*,\s*\{\s*['"]defines['"]\s*:\s*\[([^\]]*)\]\s*,?\s*\}\s*\]/g;
  const conditions = [];
  for (const [, , condition, list] of text.matchAll(pattern)) {
    const defines = [...list.matchAll(/['"]([^'"]+)['"]/g)].map((match) => match[1]);
    if (defines.length && defines.every((define) => define.startsWith('V8_'))) conditions.push({ condition, defines });
  }
  return conditions;
}

/**
 * Evaluates a gyp condition: comparisons of variables with numbers and
 * strings, `in` a string of words, joined by `and`, `or`, `not` and
 * parentheses. Variables the configuration does not name count as 0, as
 * gyp's defaults do for these.
 */
function evaluate(condition, variables) {
  const tokens = condition.match(/\s*(==|!=|\(|\)|'[^']*'|"[^"]*"|-?\d+|[A-Za-z_][A-Za-z0-9_]*)/g);
  if (!tokens || tokens.join('').replace(/\s/g, '') !== condition.replace(/\s/g, '')) {
    throw new Error(`cannot read the condition "${condition}"`);
  }
  const queue = tokens.map((token) => token.trim());
  const next = () => queue.shift();
  const peek = () => queue[0];
  const operand = () => {
    const token = next();
    if (token === '(') {
      const value = either();
      if (next() !== ')') throw new Error(`unbalanced parentheses in "${condition}"`);
      return value;
    }
    if (/^-?\d+$/.test(token)) return Number(token);
    if (/^['"]/.test(token)) return token.slice(1, -1);
    if (token === undefined) throw new Error(`"${condition}" ends too early`);
    return token in variables ? variables[token] : 0;
  };
  const comparison = () => {
    if (peek() === 'not') return (next(), !comparison());
    const left = operand();
    const operator = peek();
    if (operator === 'in') return (next(), String(operand()).includes(String(left)));
    if (operator !== '==' && operator !== '!=') return Boolean(left);
    next();
    return (String(left) === String(operand())) === (operator === '==');
  };
  const both = () => {
    let value = comparison();
    while (peek() === 'and') value = (next(), comparison()) && value;
    return value;
  };
  const either = () => {
    let value = both();
    while (peek() === 'or') value = (next(), both()) || value;
    return value;
  };
  const value = either();
  if (queue.length) throw new Error(`cannot read "${condition}" past "${queue[0]}"`);
  return value;
}

/** The V8 macros for the headers in `include`, in common.gypi's order. */
function v8Defines(include) {
  const read = (name) => {
    const file = path.join(include, name);
    return fs.existsSync(file) ? fs.readFileSync(file, 'utf8') : '';
  };
  const common = read('common.gypi');
  const variables = { ...defaultVariables(common), ...configuredVariables(read('config.gypi')) };
  const defines = [];
  for (const { condition, defines: added } of macroConditions(common)) {
    if (evaluate(condition, variables)) defines.push(...added.filter((define) => !defines.includes(define)));
  }
  return defines;
}

if (require.main === module) {
  try {
    const defines = v8Defines(process.argv[2]);
    if (defines.length) process.stdout.write(`${defines.join('\n')}\n`);
  } catch (error) {
    process.stderr.write(`v8-defines: ${error.message}\n`);
    process.exit(1);
  }
}

module.exports = { v8Defines, evaluate };
