; The sounds of the phone itself, all through its small loudspeaker.

opcode speaker, a, a
  aIn xin
  aOut butbp aIn, 2100, 3000
  aOut buthp aOut, 500
  xout tanh(aOut * 1.4)
endop

; Key tone: two sines. p7: ratio of the second.
instr keytone
  iRatio = (p7 == 0 ? 1.5 : p7)
  kE linsegr 0, 0.003, 1, 0.02, 0
  kD expseg 1, 0.4, 0.3, 2, 0.1
  a1 oscili 0.5, p4, giSine
  a2 oscili 0.3, p4 * iRatio, giSine
  aS speaker a1 + a2
  place aS * kE * kD * p5 * 0.5, p6, 0.18, 0.35
endin

; Ring tone: square with an octave above, gated.
instr ring
  kE linsegr 0, 0.002, 1, 0.02, 0
  kD expseg 1, 0.12, 0.6, 1, 0.4
  a1 vco2 0.4, p4, 10
  a2 vco2 0.15, p4 * 2, 10
  aS speaker a1 + a2
  place aS * kE * kD * p5 * 0.55, p6, 0.12, 0.14
endin

; Vibration motor on a table.
instr buzz
  kE linsegr 0, 0.02, 1, 0.05, 0
  kF linseg 120, 0.06, 172, 10, 168
  aM vco2 0.5, kF, 12
  aR vco2 0.4, kF * 2.01
  aF butbp aR, 680, 400
  aT butlp aM, 500
  place (aT * 0.8 + aF * 0.6) * kE * p5 * 0.4, p6, 0.06, 0
endin

instr click
  p3 = 0.08
  aN noise 1, 0
  kN expseg 1, 0.004, 0.001, 1, 0.001
  a1 partial p4 * 4, 0.6, 0.03
  a2 partial p4, 0.5, 0.05
  aN buthp aN * kN, 1800
  place (aN + a1 + a2) * p5 * 0.251, p6, 0.2, 0.1
endin
