// All browser tests in one process: they share a browser, and the site gets one request
// after the other.

import './site.test.mjs';
import './charts.test.mjs';
import './searches.test.mjs';
import './disk_search.test.mjs';
import './disk_lists.test.mjs';
import './disk_charts.test.mjs';
import './production.test.mjs';
import './mail.test.mjs';
