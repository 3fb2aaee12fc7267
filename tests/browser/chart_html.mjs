// The charts of a page as its HTML says them, and the calendar that they should show.

// Figures as pages show them, with the words of the shipped Language.ini.
const volume = '(-|0|\\d[\\d ]* [MGTP]( \\(\\d[\\d ]* [kMG]bit/s\\))?)';
const packets = '(-|\\d[\\d ]* per min(\n\\(\\d[\\d ]* per sec\\))?)';
const errors = '(-|\\d[\\d ]* per 24h(\n\\(\\d[\\d ]* per (min|sec)\\))?)';
const size = '(-|\\d[\\d ]* [MGTP])';
const share = '(-|\\d[\\d ]* [MGTP] \\(\\d+%\\))';
const count = '(-|\\d+)';

// In the order of the page. The popups of a chart are numbered from `firstId` + 1 on.
export const portCharts = [
  chart('Volume', 100, ['In Volume', volume], ['Out Volume', volume]),
  chart('Broadcast and Multicast', 200, ['In Broadcast', packets], ['In Multicast', packets]),
  chart('Errors', 300, ['In Errors', errors], ['Out Errors', errors]),
];
export const summaryCharts = [
  ...portCharts,
  chart('Ports', 400, ['All Ports', count], ['Ports in Traffic', '(-|\\d+ \\(\\d+%\\))']),
];

export const diskCharts = [storageChart('Disk Usage', 100)];
export const memoryCharts = [
  storageChart('Physical Memory', 100),
  storageChart('Virtual Memory', 200),
];
export const storageSummaryCharts = [
  ['Physical Memory', 100],
  ['Virtual Memory', 200],
  ['Windows Disks', 300],
  ['Unix Disks', 400],
].map(([title, firstId]) => storageChart(title, firstId, ['Storages', count]));

function storageChart(title, firstId, ...more) {
  return chart(title, firstId, ['Total', size], ['Used', share], ...more);
}

// A further figure stands in the popups alone.
function chart(title, firstId, left, right, ...more) {
  const figures = [left, right, ...more].map(([word, figure]) => `${word}: ${figure}`);
  return {
    title,
    firstId,
    words: [left[0], right[0]],
    popupPattern: new RegExp(`^[A-Z][a-z]+, [A-Z][a-z]+ \\d+\n${figures.join('\n')}$`),
  };
}

export const days = 45;

// Ages of the days without an import in the demonstration, in days before today.
export const missedDays = [9, 20, 21, 37];
export const ageAt = (position) => days + 1 - position;
export const positionAt = (age) => days + 1 - age;

// The calendar days of the charts, oldest first. `today` is "2024-05-02".
export function calendarBefore(today) {
  return Array.from({ length: days }, (_, index) => {
    const day = new Date(`${today}T00:00:00Z`);
    day.setUTCDate(day.getUTCDate() - ageAt(index + 1));
    const name = (part) => day.toLocaleDateString('en-US', { ...part, timeZone: 'UTC' });
    return {
      number: String(day.getUTCDate()),
      weekday: day.getUTCDay(), // 0 is Sunday
      title: `${name({ weekday: 'long' })}, ${name({ month: 'long' })} ${day.getUTCDate()}`,
    };
  });
}

// What a browser shows of a piece of HTML without nested elements.
const shownText = (html) =>
  html.replaceAll('<br>', '\n').replaceAll(/<[^>]*>/g, '').replaceAll(/ +/g, ' ');

// One entry for each chart of the page, with its days from the oldest on.
export function chartsIn(html) {
  return html.split("class='chartData'>").slice(1).map((text) => {
    const found = (pattern) => [...text.matchAll(pattern)];
    const bars = (side) =>
      found(new RegExp(`<tr class='chartData${side}'><td height='(\\d+)'>`, 'g'));
    const numbers = found(/<table width='14px'><a [^>]*>(\d+)<\/a>/g);
    const popups = found(/<div id='(c\d+)' class='popupChart' [^>]*>(.*)<\/div>/g);
    const left = bars('Left');
    const right = bars('Right');
    return popups.map(([, id, popup], index) => {
      const [title, ...figures] = shownText(popup).split('\n');
      return {
        id,
        title,
        popup: shownText(popup),
        figures, // lines: a rate stands in one of its own
        number: numbers[index]?.[1],
        bars: [Number(left[index]?.[1]), Number(right[index]?.[1])],
      };
    });
  });
}
