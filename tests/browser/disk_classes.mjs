// The four kinds of storage that the site tells apart, with what the demonstration has of them.

// In the order in which their pages are built. `count` is how many storages yesterday's table has.
export const classes = [
  { name: 'physical', report: 'Physical Memory Top 10', count: 14, isMemory: true },
  { name: 'virtual', report: 'Virtual Memory Top 10', count: 14, isMemory: true },
  { name: 'windows', report: 'Windows Disks Top 10', count: 15, isMemory: false },
  { name: 'unix', report: 'Unix Disks Top 10', count: 15, isMemory: false },
];

export const diskListName = (name, order) => `disk-${name}-top10-${order}.htm`;

// The list to which the selector leads.
export const selectedOrder = 'usedpercent-desc';
