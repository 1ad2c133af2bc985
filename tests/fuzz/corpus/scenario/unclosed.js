function a() {
  say(`open ${ {a: '
