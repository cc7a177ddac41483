'use strict';
// Summaries of repeated samples, shared by the benchmarks.

function median(values) {
  const sorted = [...values].sort((a, b) => a - b);
  const middle = sorted.length >> 1;
  return sorted.length % 2 ? sorted[middle] : (sorted[middle - 1] + sorted[middle]) / 2;
}

/** The value at fraction `q` of an already sorted list. */
function quantile(sorted, q) {
  return sorted[Math.min(sorted.length - 1, Math.max(0, Math.ceil(q * sorted.length) - 1))];
}

/** Interquartile range relative to the median: how much the samples wander. */
function spread(values) {
  const sorted = [...values].sort((a, b) => a - b);
  const at = (q) => sorted[Math.min(sorted.length - 1, Math.round(q * (sorted.length - 1)))];
  return (at(0.75) - at(0.25)) / median(values);
}

module.exports = { median, quantile, spread };
