# Expected log, console, ".coe" and ".mtp" of a one-marker mapping run with
# all methods off, composed from the layouts of the run's messages and
# marker reports.
import sys
def files(genorow, cn):
    name=genorow.split()[0]; codes=genorow.split()[1:]
    nA=codes.count('A'); nB=codes.count('B'); nX=codes.count('X')
    start=['Welcome to the use of TOV.exe!','  TOV.exe starts at hh:mm:ss.sss on yyyy/mm/dd (yyyy/mm/dd)',
           '  TOV.mio read successfully!','  study.txt read successfully!','  study.par read successfully!',
           '  Dealing with redundancy and multi-collinearality...']
    end=['  Permutation test is running...','  QTL mapping is running...',
         '  TOV.exe ends at hh:mm:ss.sss on yyyy/mm/dd (yyyy/mm/dd)','CPU_TIME taken: m minutes or s seconds']
    step1=['Step 1: Binning of markers',
           'MarkerID'.rjust(12)+' '+'MarkerName'.rjust(35)+'Missing(%)'.rjust(12)+'BinID'.rjust(12)+'Deleted'.rjust(12),
           '%12d'%1+' '+name.rjust(35)+'%12.4f'%(100.0*nX/len(codes))+'%12d'%0+'%12d'%0]
    step2=[]
    if cn>=0:
        # one marker: its correlation matrix is [1], the condition index 1
        step2=['Step 2: Handling multicollinearity',
               'Step'.rjust(12)+'CN'.rjust(12)+' '+'MarkerName'.rjust(35)+'NumLines'.rjust(12)+' '+'MarkerName'.rjust(35)
               +'NumLines'.rjust(12)+'Coefficient'.rjust(12)+'Deleted'.rjust(20),
               '%12d'%0+'1.'.rjust(12),'']
    log=start+step1+step2+end
    console=start+end
    coe=['MarkerID'.rjust(12)+' '+'MarkerName'.rjust(35)+'%12d'%1,'%12d'%1+' '+name.rjust(35)+'%12.4f'%1.0,'']*2
    mtp=['MarkerID'.rjust(12)+' '+'MarkerName'.rjust(35)+''.join(t.rjust(12) for t in ('Size(Donor)','Size(Bkgrd)','Missing','Deleted')),
         '%12d'%1+' '+name.rjust(35)+'%12d'%nA+'%12d'%nB+'%12d'%nX+'%12d'%0]
    return {'TOV.log':log,'console.txt':console,'study.coe':coe,'study.mtp':mtp}
if __name__=='__main__':
    import os
    out=sys.argv[1]; genorow=sys.argv[2]; cn=float(sys.argv[3])
    for k,v in files(genorow,cn).items():
        open(os.path.join(out,k),'w').write('\n'.join(v)+'\n')
