; Last instrument of every stem: the room and the echo that the others send to.
instr space
  aDL delayr $BEAT * 1.5
  aTapL deltap $BEAT * 0.75
        delayw gaDelL + gaDelR * 0.3
  aDR delayr $BEAT * 1.5
  aTapR deltap $BEAT * 0.75
        delayw gaDelR * 0.5 + aTapL * 0.55
  aEL tone aTapL, 5200
  aER tone aTapR, 5200
  aEL buthp aEL, 220
  aER buthp aER, 220
  aInL = gaRevL + aEL * 0.2
  aInR = gaRevR + aER * 0.2
  aInL buthp aInL, 160
  aInR buthp aInR, 160
  aRL, aRR reverbsc aInL, aInR, 0.86, 9000
  outs aRL + aEL, aRR + aER
  clear gaRevL, gaRevR, gaDelL, gaDelR
endin
