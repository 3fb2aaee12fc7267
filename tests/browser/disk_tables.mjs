// The tables of disks and memories: their columns, and the orders in which they come.

export const heads = [
  'Device',
  'Storage',
  'Total',
  'Free',
  'Used',
  'Used %',
  'Trend 14d',
  'Trend 30d',
];

const firstFigure = heads.indexOf('Total');

// In the order of the columns. `first` is the direction that its head offers where the list is
// sorted by another column.
export const fields = [
  { key: 'totalbytes', first: 'desc', word: 'Total Bytes', ends: ['Smallest', 'Largest'] },
  { key: 'freebytes', first: 'asc', word: 'Free Bytes', ends: ['Least', 'Most'] },
  { key: 'usedbytes', first: 'desc', word: 'Used Bytes', ends: ['Least', 'Most'] },
  { key: 'usedpercent', first: 'desc', word: 'Used Percent', ends: ['Lowest', 'Highest'] },
  { key: 'trend14d', first: 'desc', word: 'Trend 14d', ends: ['Lowest', 'Highest'] },
  { key: 'trend30d', first: 'desc', word: 'Trend 30d', ends: ['Lowest', 'Highest'] },
];
const titles = [
  'Total Size',
  'Free Space',
  'Used Space',
  'Used Percent',
  'Trend 14 Days',
  'Trend 30 Days',
];

const directions = [
  { key: 'asc', word: 'Asc', sign: 1 },
  { key: 'desc', word: 'Desc', sign: -1 },
];

// Each column up and down: how it is named in URLs and offered in the form, the title of its list.
export const orders = fields.flatMap((field, index) =>
  directions.map(({ key, word, sign }, side) => ({
    key: `${field.key}-${key}`,
    field,
    direction: key,
    option: `${field.word} - ${word}`,
    title: `${field.ends[side]} ${titles[index]}`,
    column: firstFigure + index,
    sign,
  })),
);

// "1 500 G" and "+3 %" as numbers that compare.
export function figure(text) {
  const [, number, unit] = /^([+-]?[\d ]+) ([MGT%])$/.exec(text);
  return Number(number.replaceAll(' ', '')) * { M: 1, G: 1e3, T: 1e6, '%': 1 }[unit];
}
