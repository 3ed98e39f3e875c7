// ---- State -----------------------------------------------------------------------------------

const titleEl = document.getElementById('title');
const bodyEl = document.getElementById('body');
let savedRange = null; // last known selection inside title or body, a clone
let savedEl = bodyEl; // the region, or after a caret helper the element, that savedRange belongs to
let currentNoteID = null; // whose content the page shows, set by the host before each setContent
let debounceTimer = null; // pending change notification
let throttleClock = 0; // ms, time of the last throttled notification
let reportTimer = null; // pending format report
let holdTimer = null; // while it runs, change notifications are held back
let isReportHeld = false; // one was
let lastAnswer = null; // the text that the host was last told on its asking

const CHANGE_DEBOUNCE = 120;
const INPUT_THROTTLE = 80;
const COMPOSITION_DELAY = 10;
const REPORT_PATIENCE = 1000;
const REPORT_DEBOUNCE = 80;
const REPORT_AFTER_COMMAND = 30;
const FOCUS_DELAY = 30;
const CARET_RETRY = 50;
const CARET_ATTEMPTS = 6;
const EXIT_DIAGNOSTIC = 300;
